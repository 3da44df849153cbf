#pragma once

#include "tests/support/simulated_services.h"
#include "tests/ui/controls/view_test.h"
#include "ui/controls/button.h"
#include "ui/dashboard/activity_section.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/cooling_section.h"
#include "ui/dashboard/dashboard_view.h"
#include "ui/dashboard/io_section.h"
#include "ui/dashboard/memory_section.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace kestro {

/// Fixture for the dashboard on a simulated machine that has settled.
class DashboardViewTest : public testing::Test {
protected:
    DashboardViewTest() { motion::setReduced(true); }

    ~DashboardViewTest() override {
        view_.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    template <typename Arrange>
    void make(Arrange arrange) {
        view_.reset();
        machine_ = std::make_unique<SimulatedServices>(arrange);
        KestroTheme::bind(&machine_->settings());
        machine_->settle();
        DashboardActions actions;
        actions.onOpenSettings = [this] { asked_ += 's'; };
        actions.onToggleFullScreen = [this] { asked_ += 'f'; };
        actions.onClose = [this] { asked_ += 'c'; };
        view_ = std::make_unique<DashboardView>(machine_->services(), actions);
    }

    void make() {
        make([](SimulatedMac&) {});
    }

    void show(int width, int height) {
        view_->resize(width, height);
        view_->show();
        QApplication::processEvents();
    }

    template <typename Section>
    Section& section() {
        return *view_->findChild<Section*>();
    }

    Button& headerButton(const QString& help) {
        for (Button* button : view_->findChildren<Button*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (button->help() == help) {
                return *button;
            }
        }
        throw std::runtime_error("no such button: " + help.toStdString());
    }

    QString rowValue(const QString& label) {
        for (const RuledIndexRow* row : view_->findChildren<RuledIndexRow*>()) {
            if (row->content().label == label) {
                return row->content().value;
            }
        }
        return {};
    }

    std::unique_ptr<SimulatedServices> machine_;
    std::unique_ptr<DashboardView> view_;
    std::string asked_;
};

}  // namespace kestro
