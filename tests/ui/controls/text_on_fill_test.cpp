#include "tests/ui/controls/view_test.h"
#include "ui/controls/badge.h"
#include "ui/controls/button.h"
#include "ui/controls/segmented_choice.h"
#include "ui/theme/color_mix.h"

#include <QHash>

#include <algorithm>

namespace kestro {
namespace {

constexpr double readable = 4.5;

/// The contrast of the text of a widget with the widget's fill, both as painted on a card. Enlarged, so that
/// letters reach their full colour.
double textContrast(QWidget& widget) {
    constexpr int scale = 8;
    QImage image(widget.size() * scale, QImage::Format_RGB32);
    image.fill(KestroTheme::surface());
    QPainter painter(&image);
    painter.scale(scale, scale);
    widget.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    painter.end();
    QHash<QRgb, int> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++colors[image.pixel(x, y)];
        }
    }
    const auto fill =
        std::max_element(colors.keyValueBegin(), colors.keyValueEnd(),
                         [](const auto& one, const auto& other) { return one.second < other.second; });
    double best = 1;
    constexpr int solid = 60;  // pixels; fewer belong to an edge
    for (const auto& [color, count] : colors.asKeyValueRange()) {
        if (count >= solid) {
            best = std::max(best, contrast(QColor(color), QColor((*fill).first)));
        }
    }
    return best;
}

class TextOnFill : public ViewTest, public testing::WithParamInterface<ThemePalette> {
protected:
    TextOnFill() { settings_.themePalette.set(GetParam()); }

    static std::unique_ptr<Button> makeButton(ButtonKind kind) {
        auto button = std::make_unique<Button>(kind);
        button->setText(QStringLiteral("HAMBURG"));
        button->resize(button->sizeHint());
        return button;
    }

    /// At rest, hovered and pressed.
    static void expectReadable(Button& button, const char* what) {
        EXPECT_GE(textContrast(button), readable) << what;
        hoverAt(button, QPointF(button.rect().center()));
        EXPECT_GE(textContrast(button), readable) << what << " hovered";
        send(button, QEvent::MouseButtonPress, QPointF(button.rect().center()), Qt::LeftButton);
        EXPECT_GE(textContrast(button), readable) << what << " pressed";
    }
};

TEST_P(TextOnFill, BadgesAreReadable) {
    const std::pair<const char*, Ink> inks[] = {{"cool", KestroTheme::accentCool},
                                                {"nominal", KestroTheme::accentNominal},
                                                {"warning", KestroTheme::accentWarning},
                                                {"critical", KestroTheme::accentCritical}};
    for (const BadgeKind kind : {BadgeKind::section, BadgeKind::settings}) {
        for (const auto& [name, ink] : inks) {
            Badge badge(kind, QStringLiteral("HAMBURG"), ink);
            badge.resize(badge.sizeHint());
            EXPECT_GE(textContrast(badge), readable) << name;
        }
    }
}

TEST_P(TextOnFill, ButtonsAreReadableInEveryState) {
    expectReadable(*makeButton(ButtonKind::prominent), "prominent");
    expectReadable(*makeButton(ButtonKind::regular), "regular");
    expectReadable(*makeButton(ButtonKind::plain), "plain");
    for (const bool isOn : {false, true}) {
        for (const auto& [kind, name] :
             {std::pair(ButtonKind::chip, "chip"), std::pair(ButtonKind::choice, "choice")}) {
            const auto button = makeButton(kind);
            button->setOn(isOn);
            expectReadable(*button, name);
        }
    }
}

TEST_P(TextOnFill, SegmentsAreReadable) {
    SegmentedChoice choice({{QStringLiteral("HAMBURG"), {}}, {QStringLiteral("FONTS"), {}}}, 28);
    choice.resize(200, 28);
    for (const int chosen : {0, 1}) {
        choice.setChosen(chosen);
        EXPECT_GE(textContrast(choice), readable);
    }
}

TEST_P(TextOnFill, ChosenMenuRowsAreReadable) {
    EXPECT_GE(contrast(KestroTheme::ground(), KestroTheme::accentCool()), readable);
}

TEST(ReadableOn, LightensOnlyAsFarAsNeeded) {
    const QColor red = KestroTheme::accentCritical();

    EXPECT_EQ(readableOn(Qt::black, red), red);
    const QColor onDim = readableOn(QColor(50, 20, 20), red);
    EXPECT_GE(contrast(onDim, QColor(50, 20, 20)), readable);
    EXPECT_LT(contrast(onDim, QColor(50, 20, 20)), 4.8);
}

INSTANTIATE_TEST_SUITE_P(Palettes, TextOnFill, testing::ValuesIn(allCases<ThemePalette>()));

}  // namespace
}  // namespace kestro
