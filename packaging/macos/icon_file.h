#pragma once

#include <QByteArray>
#include <QString>

namespace kestro {

/// An icon file of macOS (icns) with the picture in an SVG file at every size from 32 to 1024 pixels. Empty if the
/// SVG file cannot be rendered.
QByteArray iconFile(const QString& svgFile);

}  // namespace kestro
