#include "ui/popover/menu_bar_popover_view.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "ui/controls/composition.h"
#include "ui/controls/menu_button.h"
#include "ui/decorations/orvanel_watermark.h"
#include "ui/format/format_rate.h"
#include "ui/popover/popover_content.h"
#include "ui/popover/popover_geometry.h"
#include "ui/popover/readout_line.h"
#include "ui/theme/hairline.h"
#include "ui/widgets/load_bar.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

using namespace popover_geometry;
using text_styles::w600;

constexpr double kCornerRadius = 10;
constexpr StateOpacity kAwakeFill{0.12, 0.22, 0.10};

TextStyle sized(TextStyle style, double size, QFont::Weight weight) {
    style.size = size;
    style.weight = weight;
    return style;
}

const TextStyle& headingValue() {
    static const TextStyle style = sized(text_styles::popoverValue, 10, w600);
    return style;
}

/// Three columns leave no room for the large figures of one or two.
ReadoutLine::Style fanLine(std::size_t fanCount) {
    if (fanCount > 4) {
        return {9, sized(text_styles::popoverLabel, 8, text_styles::w500), text_styles::popoverValue};
    }
    return {9, text_styles::popoverLabel, sized(text_styles::popoverValue, 11, w600)};
}

ReadoutLine::Style plainLine() {
    return {0, text_styles::popoverLabel, text_styles::popoverValue};
}

/// A line whose text is the value itself, after a symbol.
ReadoutLine::Style valueLine(double symbolSize) {
    return {symbolSize, text_styles::popoverValue, text_styles::popoverValue};
}

QString name(FanProfile profile) {
    return Words(rawValue(profile));
}

QString symbolOf(FanProfile profile) {
    return Words(tableRow(profile).iconName);
}

template <typename W>
W* placed(W* widget, const QRect& area) {
    widget->setGeometry(area);
    return widget;
}

}  // namespace

MenuBarPopoverView::MenuBarPopoverView(const KestroServices& services, PopoverActions actions, QWidget* parent)
    : GlassSurface(services.settings, kCornerRadius, parent), services_(services), actions_(std::move(actions)) {
    setFixedSize(popover_geometry::size);
    // The panel itself takes the focus, so that the first press of Tab reaches the first control.
    setFocusPolicy(Qt::ClickFocus);
    // In reading order, which is also the order of the Tab key.
    buildHeader();
    buildCompute();
    buildMemory();
    buildCooling();
    buildInputOutput();
    buildPower();
    buildFooter();
    subscribe();
}

MenuBarPopoverView::~MenuBarPopoverView() = default;

QSize MenuBarPopoverView::sizeHint() const {
    return popover_geometry::size;
}

std::optional<PlacedHalftoneField> MenuBarPopoverView::halftone() const {
    return popoverHalftone(settings().halftonePattern.get());
}

void MenuBarPopoverView::paintEvent(QPaintEvent* event) {
    GlassSurface::paintEvent(event);
    QPainter painter(this);
    for (const int top : hairlines) {
        paintHairline(painter, left, right, top);
    }
}

void MenuBarPopoverView::showEvent(QShowEvent* event) {
    showCompute();
    showMemory();
    showFans();
    showThermals();
    showProfile();
    showNetwork();
    showDisk();
    showPower();
    showKeepAwake();
    GlassSurface::showEvent(event);
    setFocus();
}

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
        text = placed(new ReadoutLine(plainLine(), this), line(top, top + 12));
        bar = placed(new LoadBar(KestroTheme::accentCool, this), QRect(84, top + 4, 198, LoadBar::kHeight));
    };
    addCluster(65, firstCluster_, firstBar_);
    addCluster(80, secondCluster_, secondBar_);
}

void MenuBarPopoverView::buildMemory() {
    memory_ = placed(new ReadoutLine({0, text_styles::blockHeading, headingValue()}, this), line(107, 121));
    memory_->setLabel(QStringLiteral("Unified Memory"));
    memoryAmounts_ = placed(new ReadoutLine(plainLine(), this), line(122, 134));
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
    profile_->setPadding(1);
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
    keepAwake_->setOnFill(kAwakeFill);
    keepAwake_->onClick([this] { services_.keepAwake.toggle(); });
}

void MenuBarPopoverView::buildFooter() {
    Button* const quit = new Button(ButtonKind::plain, this);
    quit->setText(QStringLiteral("Quit"));
    quit->setTextStyle(text_styles::popoverValue);
    quit->setInk(KestroTheme::textSecondary);
    quit->setSpread(true);
    quit->setGeometry(left - 8, 301, 44, 22);
    quit->onClick([this] { actions_.onQuit(); });
    auto* const watermark = new OrvanelWatermark(OrvanelWatermark::Variant::compact, this);
    watermark->move(right - watermark->width(), 312 - watermark->height() / 2);
}

void MenuBarPopoverView::subscribe() {
    const auto follow = [this](auto& published, void (MenuBarPopoverView::*refresh)()) {
        subscriptions_.push_back(published.subscribe([this, refresh](const auto&) {
            if (isVisible()) {
                (this->*refresh)();
            }
        }));
    };
    follow(services_.engine.cpu, &MenuBarPopoverView::showCompute);
    follow(services_.engine.memory, &MenuBarPopoverView::showMemory);
    follow(services_.engine.fans, &MenuBarPopoverView::showFans);
    follow(services_.engine.thermals, &MenuBarPopoverView::showThermals);
    follow(services_.engine.network, &MenuBarPopoverView::showNetwork);
    follow(services_.engine.disk, &MenuBarPopoverView::showDisk);
    follow(services_.engine.power, &MenuBarPopoverView::showPower);
    follow(services_.settings.temperatureUnit, &MenuBarPopoverView::showThermals);
    follow(services_.settings.fanSpeedUnit, &MenuBarPopoverView::showFans);
    follow(services_.fanManager.currentProfile, &MenuBarPopoverView::showProfile);
    follow(services_.keepAwake.isActive, &MenuBarPopoverView::showKeepAwake);
    follow(services_.keepAwake.remainingSeconds, &MenuBarPopoverView::showKeepAwake);
}

void MenuBarPopoverView::showCompute() {
    const ComputeContent content = computeContent(services_.engine.cpu.get());
    total_->setValue(content.total);
    const auto fill = [](const ClusterContent& cluster, ReadoutLine& text, LoadBar& bar) {
        text.setLabel(cluster.label);
        text.setValue(cluster.value);
        bar.setFraction(cluster.fraction);
    };
    fill(content.first, *firstCluster_, *firstBar_);
    secondCluster_->setVisible(content.second.has_value());
    secondBar_->setVisible(content.second.has_value());
    if (content.second) {
        fill(*content.second, *secondCluster_, *secondBar_);
    }
}

void MenuBarPopoverView::showMemory() {
    const MemoryContent content = memoryContent(services_.engine.memory.get());
    memory_->setValue(content.percent);
    memoryAmounts_->setLabel(content.amounts);
}

void MenuBarPopoverView::showFans() {
    const auto& fans = services_.engine.fans.get();
    layOutFans(fans.size());
    if (fans.empty()) {
        return;
    }
    for (std::size_t i = 0; i < fanLines_.size(); ++i) {
        fanLines_[i]->setLabel(Words(fans[i].name));
        fanLines_[i]->setValue(Words(services_.engine.formatFanRPM(fans[i].currentRPM)));
    }
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
        auto* const fan = placed(new ReadoutLine(fanLine(fanCount), this), area);
        fan->setSymbol(heading.symbol, fanCount == 0 ? KestroTheme::accentNominal : KestroTheme::textSecondary);
        fan->stackUnder(peak_);
        fan->show();
        fanLines_.push_back(fan);
    }
    if (fanCount == 0) {
        fanLines_.front()->setLabel(QStringLiteral("Fanless Acoustic Architecture · 0.0 dB Silent Dissipation"));
    }
    peak_->setGeometry(block.peak);
    profile_->setGeometry(block.profile);
}

void MenuBarPopoverView::showThermals() {
    const ThermalTelemetry& thermals = services_.engine.thermals.get();
    coolingHeading_->setValue(QStringLiteral("SoC ") +
                              Words(services_.engine.formatTemp(thermals.averageSoCTemp)));
    coolingHeading_->setValueInk(isCriticalTemperature(thermals) ? KestroTheme::accentCritical
                                                                 : KestroTheme::textPrimary);
    peak_->setValue(Words(services_.engine.formatTemp(thermals.peakDieTemp)));
}

void MenuBarPopoverView::showProfile() {
    const FanProfile profile = services_.fanManager.currentProfile.get();
    profile_->setSymbol(symbolOf(profile), 8);
    profile_->setText(QStringLiteral("Profile: ") + name(profile));
}

void MenuBarPopoverView::showNetwork() {
    const NetworkTelemetry& network = services_.engine.network.get();
    download_->setLabel(Words(formatRate(network.downloadBytesPerSec)));
    upload_->setLabel(Words(formatRate(network.uploadBytesPerSec)));
}

void MenuBarPopoverView::showDisk() {
    freeSpace_->setLabel(freeSpaceText(services_.engine.disk.get()));
}

void MenuBarPopoverView::showPower() {
    const PowerTelemetry& power = services_.engine.power.get();
    battery_->setSymbol(powerSymbol(power),
                        power.isCharging ? KestroTheme::accentNominal : KestroTheme::textSecondary);
    battery_->setLabel(batteryText(power));
}

void MenuBarPopoverView::showKeepAwake() {
    const bool isActive = services_.keepAwake.isActive.get();
    keepAwake_->setSymbol(isActive ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"), 10);
    keepAwake_->setText(isActive ? QStringLiteral("Awake (") +
                                       Words(services_.keepAwake.formattedRemainingTime()) + QLatin1Char(')')
                                 : QStringLiteral("Keep Awake"));
    keepAwake_->setOn(isActive);
    keepAwake_->setInk(isActive ? KestroTheme::accentWarning : KestroTheme::textSecondary);
    const int width = keepAwake_->sizeHint().width();
    keepAwake_->setGeometry(right - width, 273, width, 20);
}

std::vector<MenuEntry> MenuBarPopoverView::profileMenu() const {
    std::vector<MenuEntry> entries;
    for (const FanProfile profile : allCases<FanProfile>()) {
        MenuEntry entry;
        entry.title = name(profile);
        entry.symbol = symbolOf(profile);
        entry.isChecked = profile == services_.fanManager.currentProfile.get();
        entry.action = [services = services_, profile] {
            services.settings.fanProfile.set(profile);
            services.fanManager.selectProfile(profile);
        };
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace kestro
