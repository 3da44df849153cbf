#include "ui/format/volume_text.h"

namespace kestro {

QString volumeText(const DiskTelemetry& disk) {
    if (!disk.mount) {
        return {};
    }
    // No placeholders: a mount point may contain "%1".
    return QString::fromStdString(disk.mount->point) + QStringLiteral(" on ") +
           QString::fromStdString(disk.mount->device) + QStringLiteral(" (") +
           QString::fromStdString(disk.mount->type) + QLatin1Char(')');
}

}  // namespace kestro
