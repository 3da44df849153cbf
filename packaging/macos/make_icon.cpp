#include <QFile>

#include <cstdlib>

#include "packaging/macos/icon_file.h"

/// make_icon SVG ICNS: makes the bundle's icon.
int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        return EXIT_FAILURE;
    }
    const QByteArray icon = kestro::iconFile(QFile::decodeName(arguments[1]));
    QFile file(QFile::decodeName(arguments[2]));
    const bool isWritten =
        !icon.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(icon) == icon.size() && file.flush();
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
