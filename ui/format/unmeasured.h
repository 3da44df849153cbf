#pragma once

#include "ui/paint/ink.h"

#include <QString>

namespace kestro {

/// How a figure looks that no sensor gave: dimmed like a disabled control, with this help.
inline constexpr double unmeasuredOpacity = 0.38;

inline QString unmeasuredHelp() {
    return QStringLiteral("Not measured: this machine has no such sensor");
}

inline Ink figureInk(const Ink& ink, bool isMeasured) {
    return isMeasured ? ink : ink.faded(unmeasuredOpacity);
}

/// In place of a figure that the next sample measures, and how it is spoken.
inline QString pendingFigure() {
    return QStringLiteral("--");
}

inline QString pendingWords() {
    return QStringLiteral("not measured yet");
}

}  // namespace kestro
