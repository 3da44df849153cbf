#pragma once

#include <QColor>

namespace kestro::status_colors {

/// The orange of a running keep-awake session in the status bar, independent of the palette.
inline QColor orangeOnDark() {
    return QColor::fromRgbF(1.0F, 0.62F, 0.04F);
}
inline QColor orangeOnLight() {
    return QColor::fromRgbF(0.70F, 0.37F, 0.0F);
}

/// The opacity of secondary labels, relative to the text's.
inline constexpr double secondaryOpacity = 0.62;

}  // namespace kestro::status_colors
