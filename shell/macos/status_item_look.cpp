#include "shell/macos/status_item_look.h"

#include "core/readout/menubar_readout.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

namespace kestro {

namespace {

struct Weight {
    int weight;
    double native;
};

/// NSFontWeightUltraLight to NSFontWeightBlack, as CoreText's header has them.
constexpr std::array weights{Weight{100, -0.8}, Weight{200, -0.6}, Weight{300, -0.4},
                             Weight{400, 0},    Weight{500, 0.23}, Weight{600, 0.3},
                             Weight{700, 0.4},  Weight{800, 0.56}, Weight{900, 0.62}};

NativeColor nativeColor(StatusTitleColor color) {
    switch (color) {
        case StatusTitleColor::label:
            return NativeColor::label;
        case StatusTitleColor::secondaryLabel:
            return NativeColor::secondaryLabel;
        case StatusTitleColor::orange:
            return NativeColor::systemOrange;
    }
    return NativeColor::label;
}

std::string toolTip(const StatusContent& content) {
    QString text = content.title.text.isEmpty() ? content.toolTip : QString();
    if (!text.isEmpty() && !content.help.isEmpty()) {
        text += QLatin1Char('\n');
    }
    return (text + content.help).toStdString();
}

std::string accessibilityLabel(const StatusContent& content) {
    const bool isNamed = content.symbol && !content.symbol->accessibilityDescription.isEmpty();
    const QString name =
        isNamed ? content.symbol->accessibilityDescription
                : QString::fromUtf8(readoutSymbol.accessibilityDescription.data(),
                                    static_cast<qsizetype>(readoutSymbol.accessibilityDescription.size()));
    const QString spoken = content.spoken();
    return (spoken.isEmpty() ? name : name + QLatin1StringView(", ") + spoken).toStdString();
}

}  // namespace

double nativeFontWeight(int weight) {
    return std::ranges::min_element(weights, {},
                                    [weight](const Weight& known) { return std::abs(known.weight - weight); })
        ->native;
}

NativeStatusContent nativeStatusContent(const StatusContent& content) {
    NativeStatusContent native;
    if (content.symbol) {
        native.symbol = content.symbol->name.toStdString();
        native.symbolDescription = content.symbol->accessibilityDescription.toStdString();
        native.symbolPointSize = content.symbol->pointSize;
    }
    native.title = content.title.text.toStdString();
    native.titlePointSize = content.title.pointSize;
    native.titleWeight = nativeFontWeight(content.title.weight);
    native.titleColor = nativeColor(content.title.color);
    native.toolTip = toolTip(content);
    native.accessibilityLabel = accessibilityLabel(content);
    return native;
}

}  // namespace kestro
