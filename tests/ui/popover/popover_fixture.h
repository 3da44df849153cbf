#pragma once

#include "tests/support/simulated_services.h"
#include "ui/controls/button.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/popover/readout_line.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QPaintEvent>
#include <QRegion>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// Records the region that the panel repaints.
class RecordingPopover : public MenuBarPopoverView {
public:
    using MenuBarPopoverView::MenuBarPopoverView;
    QRegion painted;

protected:
    void paintEvent(QPaintEvent* event) override {
        painted += event->region();
        MenuBarPopoverView::paintEvent(event);
    }
};

/// Fixture for the popover on a frozen simulated machine that has been sampled once.
class PopoverTest : public testing::Test {
protected:
    explicit PopoverTest(const std::function<void(SimulatedMac&)>& arrange = [](SimulatedMac&) {})
        : services(arrange) {
        KestroTheme::bind(&services.settings());
        motion::setReduced(true);
        services.mac.freeze();
        services.engine().sampleFull();
        view = std::make_unique<RecordingPopover>(
            services.services(), PopoverActions{[this] { calls.append(QStringLiteral("dashboard")); },
                                                [this] { calls.append(QStringLiteral("settings")); },
                                                [this] { calls.append(QStringLiteral("quit")); }});
    }
    ~PopoverTest() override {
        view.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    void show() {
        view->show();
        settle();
        view->painted = {};
    }

    static void settle() {
        QApplication::processEvents();
        QApplication::sendPostedEvents();
    }

    void sample() {
        services.advance(std::chrono::seconds(1));
        services.engine().sampleFull();
        settle();
    }

    /// The accessible names in the order of creation, which is from top to bottom.
    QStringList spoken() const {
        QStringList names;
        for (const View* part : view->findChildren<View*>()) {
            const AccessibleInfo info = part->accessibleInfo();
            if (part->isVisible() && !info.isDecoration) {
                names.append(info.name);
            }
        }
        return names;
    }

    ReadoutLine* line(const QString& beginning) const {
        for (ReadoutLine* candidate : view->findChildren<ReadoutLine*>()) {
            if (candidate->accessibleInfo().name.startsWith(beginning)) {
                return candidate;
            }
        }
        ADD_FAILURE() << "no line " << beginning.toStdString();
        return nullptr;
    }

    Button* button(const QString& name) const {
        for (Button* candidate : view->findChildren<Button*>()) {
            if (candidate->accessibleInfo().name.startsWith(name)) {
                return candidate;
            }
        }
        ADD_FAILURE() << "no button " << name.toStdString();
        return nullptr;
    }

    void setTemperature(double celsius) {
        for (SimulatedSensor& sensor : services.mac.hidEventSystem.sensors) {
            sensor.temperature = celsius;
        }
        sample();
    }

    SimulatedServices services;
    QStringList calls;
    std::unique_ptr<RecordingPopover> view;
};

}  // namespace kestro
