#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include "ui/symbols/symbol_painter.h"

namespace kestro {
namespace {

/// Every string of the program's own sources that is made like a symbol name: small letters, figures and dots.
QSet<QString> symbolLikeTexts() {
    QSet<QString> texts;
    const QRegularExpression pattern(QStringLiteral("\"([a-z][a-z0-9]*(?:\\.[a-z0-9]+)*)\""));
    for (const char* folder : {"core", "ui", "app"}) {
        QDirIterator files(QStringLiteral(KESTRO_SOURCE_DIR "/") + QString::fromUtf8(folder),
                           {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            auto matches = pattern.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                texts.insert(matches.next().captured(1));
            }
        }
    }
    return texts;
}

/// True when the text begins like a symbol of the set, up to its first dot, and goes on after it.
bool belongsToASymbolFamily(const QString& text, const QSet<QString>& families) {
    return text.contains(QLatin1Char('.')) && families.contains(text.section(QLatin1Char('.'), 0, 0));
}

TEST(SymbolNames, EveryNameInTheSourcesHasADrawing) {
    QSet<QString> families;
    for (const QString& name : SymbolPainter::names()) {
        families.insert(name.section(QLatin1Char('.'), 0, 0));
    }

    for (const QString& text : symbolLikeTexts()) {
        if (belongsToASymbolFamily(text, families)) {
            EXPECT_TRUE(SymbolPainter::contains(text)) << text.toStdString();
        }
    }
}

TEST(SymbolNames, EveryDrawingHasAUser) {
    const QSet<QString> texts = symbolLikeTexts();

    for (const QString& name : SymbolPainter::names()) {
        EXPECT_TRUE(texts.contains(name)) << name.toStdString();
    }
}

}  // namespace
}  // namespace kestro
