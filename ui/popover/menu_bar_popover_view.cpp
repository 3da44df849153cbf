#include "ui/popover/menu_bar_popover_view.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_status.h"
#include "core/settings/user_settings.h"
#include "ui/controls/words.h"
#include "ui/format/figure_text.h"
#include "ui/format/record_text.h"
#include "ui/format/volume_text.h"
#include "ui/menus/menu_button.h"
#include "ui/paint/hairline.h"
#include "ui/popover/popover_content.h"
#include "ui/popover/popover_geometry.h"
#include "ui/popover/readout_line.h"
#include "ui/widgets/load_bar.h"

#include <QPainter>

#include <utility>

namespace kestro {

namespace {

constexpr double cornerRadius = 10;

QString name(FanProfile profile) {
    return Words(rawValue(profile));
}

QString symbolOf(FanProfile profile) {
    return Words(tableRow(profile).iconName);
}

}  // namespace

MenuBarPopoverView::MenuBarPopoverView(const KestroServices& services, PopoverActions actions, QWidget* parent)
    : GlassSurface(services.settings, cornerRadius, parent), services_(services), actions_(std::move(actions)) {
    setFixedSize(popover_geometry::size);
    setAccessibleName(QStringLiteral("Quick Glance Popover"));
    // The panel itself takes the focus, so that the first Tab reaches the first control.
    setFocusPolicy(Qt::ClickFocus);
    // In reading order, which is also the Tab order.
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
    for (const int top : popover_geometry::hairlines) {
        paintHairline(painter, popover_geometry::left, popover_geometry::right, top);
    }
}

void MenuBarPopoverView::showEvent(QShowEvent* event) {
    GlassSurface::showEvent(event);
    setFocus();
}

void MenuBarPopoverView::showEverything() {
    showCompute();
    showMemory();
    showFans();
    showThermals();
    showProfile();
    showNetwork();
    showDisk();
    showPower();
    showKeepAwake();
}

void MenuBarPopoverView::subscribe() {
    const auto follow = [this](auto& published, void (MenuBarPopoverView::*refresh)()) {
        onScreen_.follow(published, [this, refresh] { (this->*refresh)(); });
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
    follow(services_.powerStatus.keepAwake, &MenuBarPopoverView::showKeepAwake);
}

void MenuBarPopoverView::showCompute() {
    const ComputeContent content = computeContent(services_.engine.cpu.get(), services_.engine.measured().load);
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
        const QString full = Words(fans[i].name);
        const QString label = fanLabel(full, fans.size());
        fanLines_[i]->setLabel(label);
        fanLines_[i]->setSpokenPrefix(label == full ? QString() : QStringLiteral("Fan"));
        fanLines_[i]->setValue(Words(services_.engine.formatFanRPM(fans[i].currentRPM)));
    }
}

void MenuBarPopoverView::showThermals() {
    const ThermalTelemetry& thermals = services_.engine.thermals.get();
    coolingHeading_->setValue(QStringLiteral("SoC ") +
                              Words(services_.engine.formatTemp(thermals.averageSoCTemp)));
    const MeasuredTemperatures& measured = services_.engine.measured().temperatures;
    coolingHeading_->setValueInk(isCriticalTemperature(thermals, measured.averageSoC) ? KestroTheme::accentCritical
                                                                                      : KestroTheme::textPrimary);
    coolingHeading_->setMeasured(measured.averageSoC);
    peak_->setValue(Words(services_.engine.formatTemp(thermals.peakDieTemp)));
    peak_->setMeasured(measured.peakDie);
}

void MenuBarPopoverView::showProfile() {
    const FanProfile profile = services_.fanManager.currentProfile.get();
    profile_->setSymbol(symbolOf(profile), 8);
    profile_->setText(QStringLiteral("Profile: ") + name(profile));
}

void MenuBarPopoverView::showNetwork() {
    const NetworkTelemetry& network = services_.engine.network.get();
    const bool isMeasured = services_.engine.measured().rates;
    download_->setLabel(rateText(network.downloadBytesPerSec, isMeasured));
    upload_->setLabel(rateText(network.uploadBytesPerSec, isMeasured));
}

void MenuBarPopoverView::showDisk() {
    const DiskTelemetry& disk = services_.engine.disk.get();
    freeSpace_->setLabel(freeSpaceText(disk));
    freeSpace_->setHelp(volumeText(disk));
}

void MenuBarPopoverView::showPower() {
    const PowerTelemetry& power = services_.engine.power.get();
    battery_->setSymbol(powerSymbol(power),
                        power.isCharging ? KestroTheme::accentNominal : KestroTheme::textSecondary);
    battery_->setLabel(batteryText(power));
    battery_->setMeasured(power.hasBattery);
}

void MenuBarPopoverView::showKeepAwake() {
    const bool isActive = services_.keepAwake.isActive.get();
    const KeepAwakeStatus& status = services_.powerStatus.keepAwake.get();
    const bool isHeld = isActive && status.isHeld;
    keepAwake_->setSymbol(isHeld ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"), 10);
    keepAwake_->setHelp(Words(status.note));
    keepAwake_->setText(isActive ? (isHeld ? QStringLiteral("Awake (") : QStringLiteral("Not Held (")) +
                                       Words(services_.keepAwake.formattedRemainingTime()) + QLatin1Char(')')
                                 : QStringLiteral("Keep Awake"));
    keepAwake_->setOn(isActive);
    keepAwake_->setInk(isActive ? KestroTheme::accentWarning : KestroTheme::textSecondary);
    const int width = keepAwake_->sizeHint().width();
    keepAwake_->setGeometry(popover_geometry::right - width, 273, width, 20);
}

Menu MenuBarPopoverView::profileMenu() const {
    Menu entries;
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
