#pragma once

#include "ui/paint/ink.h"
#include "ui/theme/kestro_theme.h"

#include <QFont>

namespace kestro {

/// The typography of one line of text. Lengths in points; the text is vertically centred in `lineHeight`.
struct TextStyle {
    double size = 10;
    double lineHeight = 14;
    QFont::Weight weight = QFont::Medium;
    double tracking = 0;
    Ink ink = KestroTheme::textPrimary;
    bool capitals = false;

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// How text that is wider than its box is fitted. Both modes first shrink to at least 0.8 of the size. `label` is
/// then elided at the right; `value` is never elided but shrinks further, to 7 points at least.
enum class TextFit { label, value };

/// The styles that the surfaces share.
namespace text_styles {

inline constexpr QFont::Weight w500 = QFont::Medium;
inline constexpr QFont::Weight w600 = QFont::DemiBold;
inline constexpr QFont::Weight w700 = QFont::Bold;
inline constexpr QFont::Weight w900 = QFont::Black;

inline const TextStyle wordmarkDashboard{14, 28, w900, 1.2, KestroTheme::textPrimary};
inline const TextStyle wordmarkPopover{11, 24, w900, 1.0, KestroTheme::textPrimary};
inline const TextStyle windowTitle{13, 28, w700, 0, KestroTheme::textPrimary};
inline const TextStyle groupHeading{10, 14, w700, 0.9, KestroTheme::textSecondary, true};
inline const TextStyle sectionTitle{10, 14, w700, 0.8, KestroTheme::textPrimary, true};
inline const TextStyle blockHeading{10, 14, w700, 0.2, KestroTheme::textPrimary};
inline const TextStyle displayFigure{30, 30, w600, -0.6, KestroTheme::textPrimary};
inline const TextStyle displayUnit{12, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle rowLabel{10, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle rowValue{11, 14, w600, 0, KestroTheme::textPrimary};
inline const TextStyle rowDetail{9, 11, w500, 0, Ink(KestroTheme::textSecondary).faded(0.78)};
inline const TextStyle popoverLabel{9, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle popoverValue{9, 14, w600, 0, KestroTheme::textPrimary};
inline const TextStyle settingTitle{12, 15, w500, 0, KestroTheme::textPrimary};
inline const TextStyle settingDescription{10.5, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle button{11, 14, w600, 0, KestroTheme::textPrimary};
inline const TextStyle segment{11, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle chosenSegment{11, 14, w600, 0, KestroTheme::textPrimary};
inline const TextStyle tabLabel{10.5, 14, w500, 0, KestroTheme::textSecondary};
inline const TextStyle sectionBadge{9, 14, w600, 0, KestroTheme::textPrimary};
inline const TextStyle settingsBadge{10, 18, w600, 0, KestroTheme::textPrimary};
inline const TextStyle caption{9, 14, w500, 0.5, KestroTheme::textSecondary};

}  // namespace text_styles

}  // namespace kestro
