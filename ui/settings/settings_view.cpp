#include "ui/settings/settings_view.h"

#include "core/settings/user_settings.h"
#include "ui/controls/composition.h"
#include "ui/controls/scroll_area.h"
#include "ui/controls/tab_strip.h"
#include "ui/paint/hairline.h"
#include "ui/settings/appearance_tab.h"
#include "ui/settings/cooling_tab.h"
#include "ui/settings/dashboard_tab.h"
#include "ui/settings/keep_awake_tab.h"
#include "ui/settings/menubar_tab.h"
#include "ui/settings/power_tab.h"
#include "ui/settings/sensors_tab.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QPainter>
#include <QShortcut>

#include <utility>

namespace kestro {

namespace {

constexpr double cornerRadius = 12;
constexpr int paneInset = 20;
constexpr int headerTop = 10;
constexpr int headerHeight = 28;
constexpr int stripTop = 48;
constexpr int hairlineTop = 100;
constexpr int contentTop = 101;
constexpr int contentMargin = 16;

SettingsPane* makePane(SettingsTab tab, const KestroServices& services) {
    switch (tab) {
        case SettingsTab::menubar:
            break;
        case SettingsTab::keepAwake:
            return new KeepAwakeTab(services);
        case SettingsTab::cooling:
            return new CoolingTab(services);
        case SettingsTab::power:
            return new PowerTab(services);
        case SettingsTab::dashboard:
            return new DashboardTab(services);
        case SettingsTab::appearance:
            return new AppearanceTab(services);
        case SettingsTab::sensors:
            return new SensorsTab(services);
    }
    return new MenubarTab(services);
}

std::vector<Tab> tabs() {
    std::vector<Tab> tabs;
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        tabs.push_back({Words(rawValue(tab)), Words(icon(tab))});
    }
    return tabs;
}

}  // namespace

SettingsView::SettingsView(const KestroServices& services, const SettingsActions& actions, QWidget* parent)
    : GlassSurface(services.settings, cornerRadius, parent), services_(services) {
    makeHeader(actions);
    strip_ = new TabStrip(tabs(), this);
    strip_->setAccessibleName(QStringLiteral("Preferences"));
    strip_->onChosen(
        [this](int index) { services_.settings.selectedSettingsTab.set(static_cast<SettingsTab>(index)); });
    const auto shortcut = [this](const QKeySequence& keys, int distance) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, distance] { step(distance); });
    };
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
    shortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1);
    subscriptions_.push_back(
        services.settings.selectedSettingsTab.subscribe([this](SettingsTab) { showSelectedTab(); }));
    resize(sizeHint());
}

QWidget* SettingsView::content(SettingsTab tab) const {
    const ScrollArea* area = areas_[static_cast<std::size_t>(tab)];
    return area == nullptr ? nullptr : area->widget();
}

void SettingsView::makeHeader(const SettingsActions& actions) {
    header_ = row(symbol("gauge.with.needle", 15, KestroTheme::accentCool), space(8),
                  text("Kestro Preferences").style(text_styles::windowTitle), spacer(),
                  chip(symbol("xmark", 10)).square(headerHeight).help("Close").onClick(actions.onClose))
                  .release();
    header_->setParent(this);
}

void SettingsView::resizeEvent(QResizeEvent* event) {
    GlassSurface::resizeEvent(event);
    header_->setGeometry(paneInset, headerTop, width() - 2 * paneInset, headerHeight);
    strip_->setGeometry(paneInset, stripTop, width() - 2 * paneInset, TabStrip::fixedHeight);
    for (ScrollArea* area : areas_) {
        if (area != nullptr) {
            area->setGeometry(0, contentTop, width(), height() - contentTop);
        }
    }
}

void SettingsView::showEvent(QShowEvent* event) {
    GlassSurface::showEvent(event);
    showSelectedTab();
}

void SettingsView::paintEvent(QPaintEvent* event) {
    GlassSurface::paintEvent(event);
    QPainter painter(this);
    paintHairline(painter, 0, width(), hairlineTop);
}

void SettingsView::showSelectedTab() {
    if (!isVisible()) {
        return;
    }
    const SettingsTab selected = services_.settings.selectedSettingsTab.get();
    const auto index = static_cast<std::size_t>(selected);
    strip_->setChosen(static_cast<int>(index));
    if (areas_[index] == nullptr) {
        areas_[index] = makeTab(selected);
    }
    if (shown_ != index) {
        exchangeTabs(index);
    }
}

void SettingsView::exchangeTabs(std::size_t coming) {
    leaving_ = std::exchange(shown_, coming);
    const QWidget* focus = QApplication::focusWidget();
    if (leaving_ && focus != nullptr && areas_[*leaving_]->isAncestorOf(focus)) {
        strip_->setFocus(Qt::OtherFocusReason);
    }
    areas_[coming]->show();
    areas_[coming]->raise();
    fade_.reset(leaving_ ? 0 : 1);
    showFade();
    fade_.moveTo(1, motion::tab);
}

void SettingsView::showFade() {
    const double progress = fade_.value();
    if (progress >= 1) {
        leaving_.reset();
    }
    for (std::size_t i = 0; i < areas_.size(); ++i) {
        if (areas_[i] == nullptr) {
            continue;
        }
        const bool isLeaving = i == leaving_;
        areas_[i]->setContentOpacity(isLeaving ? 1 - progress : i == shown_ ? progress : 1);
        areas_[i]->setVisible(i == shown_ || isLeaving);
    }
}

void SettingsView::step(int distance) {
    const int count = static_cast<int>(areas_.size());
    const int current = static_cast<int>(services_.settings.selectedSettingsTab.get());
    services_.settings.selectedSettingsTab.set(static_cast<SettingsTab>((current + distance + count) % count));
}

ScrollArea* SettingsView::makeTab(SettingsTab tab) {
    SettingsPane* pane = makePane(tab, services_);
    pane->layout()->setContentsMargins(paneInset, contentMargin, paneInset, contentMargin);
    auto* area = new ScrollArea(pane, this);
    area->setGeometry(0, contentTop, width(), height() - contentTop);
    return area;
}

}  // namespace kestro
