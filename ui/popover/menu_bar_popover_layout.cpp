// The static part of the popover: the layout and typography of its parts.

#include "core/power/keep_awake_manager.h"
#include "ui/controls/composition.h"
#include "ui/decorations/orvanel_watermark.h"
#include "ui/menus/menu_button.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/popover/popover_content.h"
#include "ui/popover/popover_geometry.h"
#include "ui/popover/readout_line.h"
#include "ui/widgets/load_bar.h"

namespace kestro {

namespace {

using namespace popover_geometry;
using text_styles::w600;

/// The bar of a cluster, between its label and its value.
constexpr int clusterBarLeft = 84;
constexpr int clusterBarWidth = 198;
constexpr int clusterLabelGap = 4;

/// The profile's fill while hovered extends beyond its content, which is aligned with the other lines.
constexpr int profileOutset = 6;

constexpr StateOpacity awakeFill{0.12, 0.22, 0.10};

TextStyle sized(TextStyle style, double size, QFont::Weight weight) {
    style.size = size;
    style.weight = weight;
    return style;
}

const TextStyle& headingValue() {
    static const TextStyle style = sized(text_styles::popoverValue, 10, w600);
    return style;
}

ReadoutLine::Style fanLine() {
    return {9, text_styles::popoverLabel, sized(text_styles::popoverValue, 11, w600)};
}

ReadoutLine::Style plainLine() {
    return {0, text_styles::popoverLabel, text_styles::popoverValue};
}

ReadoutLine::Style clusterLine() {
    ReadoutLine::Style style = plainLine();
    style.labelRoom = clusterBarLeft - clusterLabelGap - left;
    return style;
}

/// A line whose text is the value itself, after a symbol.
ReadoutLine::Style valueLine(double symbolSize) {
    return {symbolSize, text_styles::popoverValue, text_styles::popoverValue};
}

template <typename W>
W* placed(W* widget, const QRect& area) {
    widget->setGeometry(area);
    return widget;
}

}  // namespace

void MenuBarPopoverView::buildHeader() {
    const auto put = [this](QWidget* widget, const QRect& area) {
        widget->setParent(this);
        widget->setGeometry(area);
    };
    auto* const gauge = symbol("gauge.with.needle", 12, KestroTheme::accentCool).release();
    gauge->setWeight(SymbolWeight::bold);
    put(gauge, QRect(left, 14, 12, 12));
    put(text("KESTRO").style(text_styles::wordmarkPopover).release(), QRect(32, 8, 120, 24));

    Button* const open = chip("Open Dashboard", symbol("arrow.up.right.square", 10, KestroTheme::textPrimary))
                             .help("Open Full Zero-Scroll Dashboard")
                             .onClick([this] { actions_.onOpenDashboard(); })
                             .release();
    const int openWidth = open->sizeHint().width();
    Button* const settings = chip(symbol("gearshape", 10, KestroTheme::textPrimary))
                                 .help("Settings")
                                 .onClick([this] { actions_.onOpenSettings(); })
                                 .release();
    put(settings, QRect(right - openWidth - 6 - 24, 8, 24, 24));
    put(open, QRect(right - openWidth, 8, openWidth, 24));
}

void MenuBarPopoverView::buildCompute() {
    TextStyle heading = text_styles::blockHeading;
    heading.capitals = true;
    total_ = placed(new ReadoutLine({0, heading, headingValue()}, this), line(47, 61));
    total_->setLabel(QStringLiteral("CPU & Clusters"));
    const auto addCluster = [this](int top, ReadoutLine*& text, LoadBar*& bar) {
        text = placed(new ReadoutLine(clusterLine(), this), line(top, top + 12));
        bar = placed(new LoadBar(KestroTheme::accentCool, this),
                     QRect(clusterBarLeft, top + 4, clusterBarWidth, LoadBar::fixedHeight));
    };
    addCluster(65, firstCluster_, firstBar_);
    addCluster(80, secondCluster_, secondBar_);
}

void MenuBarPopoverView::buildMemory() {
    memory_ = placed(new ReadoutLine({0, text_styles::blockHeading, headingValue()}, this), line(107, 121));
    memory_->setLabel(QStringLiteral("Unified Memory"));
    memoryAmounts_ = placed(new ReadoutLine(plainLine(), this), line(122, 134));
    memoryAmounts_->setSpokenPrefix(QStringLiteral("Used"));
}

void MenuBarPopoverView::buildCooling() {
    coolingHeading_ =
        placed(new ReadoutLine({10, text_styles::blockHeading, headingValue()}, this), line(148, 162));
    peak_ = new ReadoutLine({8, text_styles::popoverLabel, text_styles::popoverValue}, this);
    peak_->setSymbol(QStringLiteral("speedometer"), KestroTheme::textSecondary);
    peak_->setLabel(QStringLiteral("Peak Die:"));
    profile_ = new MenuButton(
        ButtonKind::plain, [this] { return profileMenu(); }, this);
    profile_->setTextStyle(text_styles::popoverValue);
    profile_->setTrailingSymbol(QStringLiteral("chevron.up.chevron.down"), 7);
    profile_->setInk(KestroTheme::accentCool, KestroTheme::textPrimary);
    profile_->setTrailingInk(KestroTheme::textSecondary);
    profile_->setPadding(1 + profileOutset);
    profile_->setGap(6);
    profile_->setSpread(true);
}

void MenuBarPopoverView::buildInputOutput() {
    const auto add = [this](const QRect& area, const QString& spoken) {
        auto* const readout = placed(new ReadoutLine(valueLine(8), this), area);
        readout->setSpokenPrefix(spoken);
        return readout;
    };
    download_ = add(QRect(left, 247, 72, 14), QStringLiteral("Download"));
    download_->setSymbol(QStringLiteral("arrow.down"), KestroTheme::accentCool);
    upload_ = add(QRect(89, 247, 72, 14), QStringLiteral("Upload"));
    upload_->setSymbol(QStringLiteral("arrow.up"), KestroTheme::accentWarning);
    freeSpace_ = add(QRect(170, 247, right - 170, 14), QStringLiteral("Storage"));
    freeSpace_->setSymbol(QStringLiteral("internaldrive"), KestroTheme::textSecondary);
    freeSpace_->setTrailing(true);
}

void MenuBarPopoverView::buildPower() {
    battery_ = placed(new ReadoutLine(valueLine(10), this), QRect(left, 273, 90, 20));
    battery_->setSpokenPrefix(QStringLiteral("Battery"));
    keepAwake_ = new Button(ButtonKind::chip, this);
    keepAwake_->setHeight(20);
    keepAwake_->setTextStyle(text_styles::popoverValue);
    keepAwake_->setOnFill(awakeFill);
    keepAwake_->onClick([this] { services_.keepAwake.toggle(); });
}

void MenuBarPopoverView::buildFooter() {
    Button* const quit = new Button(ButtonKind::plain, this);
    quit->setText(QStringLiteral("Quit"));
    quit->setTextStyle(text_styles::popoverValue);
    quit->setInk(KestroTheme::textSecondary);
    quit->setSpread(true);
    quit->setFocusInset({3, 3, 3, 3});
    quit->setGeometry(left - 8, 301, 44, 22);
    quit->onClick([this] { actions_.onQuit(); });
    auto* const watermark = new OrvanelWatermark(OrvanelWatermark::Variant::compact, this);
    watermark->move(right - watermark->width(), 312 - watermark->height() / 2);
}

void MenuBarPopoverView::layOutFans(std::size_t fanCount) {
    if (laidOutFans_ == fanCount) {
        return;
    }
    laidOutFans_ = fanCount;
    const CoolingHeading heading = coolingHeading(fanCount);
    coolingHeading_->setLabel(heading.text);
    coolingHeading_->setSymbol(heading.symbol, KestroTheme::textPrimary);

    qDeleteAll(fanLines_);
    fanLines_.clear();
    const CoolingBlock block = coolingBlock(fanCount);
    for (const QRect& area : block.fans) {
        auto* const fan = placed(new ReadoutLine(fanLine(), this), area);
        fan->setSymbol(heading.symbol, fanCount == 0 ? KestroTheme::accentNominal : KestroTheme::textSecondary);
        fan->stackUnder(peak_);
        fan->show();
        fanLines_.push_back(fan);
    }
    if (fanCount == 0) {
        fanLines_.front()->setLabel(QStringLiteral("Fanless Acoustic Architecture · 0.0 dB Silent Dissipation"));
    }
    peak_->setGeometry(block.peak);
    profile_->setGeometry(block.profile.adjusted(-profileOutset, 0, profileOutset, 0));
}

}  // namespace kestro
