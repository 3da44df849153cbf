#include "tests/drills/faulty_kestro.h"

#include "app/application_content.h"
#include "app/windows/dashboard_window.h"
#include "app/windows/popover_window.h"
#include "app/windows/settings_window.h"
#include "ui/theme/motion.h"

#include <QApplication>

namespace kestro::drills {

namespace {

const std::string commandFile = "/commands";

}  // namespace

FaultyKestro::FaultyKestro(const std::function<void(SimulatedMac&)>& arrange)
    : simulated(arrange),
      delegate(mac.platform(), simulated.services(), simulated.objects->readers.smc, {bar, windowSystem},
               kestroSurfaces(), {commandFile}, {.terminate = [] {}, .trimMemory = [] {}}) {
    motion::setReduced(true);
    delegate.applicationDidFinishLaunching();
    settle();
}

FaultyKestro::~FaultyKestro() {
    motion::setReduced(false);
}

void FaultyKestro::settle() {
    mac.runPending();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    mac.runPending();
}

void FaultyKestro::pass(std::chrono::seconds time) {
    mac.advance(time);
    settle();
}

void FaultyKestro::openEverything() {
    if (!delegate.popover()->isVisible()) {
        bar.click(QStringLiteral("kestro-main"), StatusClick::primary, false, {700, 0, 40, 20});
    }
    delegate.showDashboard();
    delegate.showSettings();
    settle();
}

void FaultyKestro::closeEverything() {
    delegate.hideDashboard();
    if (delegate.settingsWindow() != nullptr) {
        delegate.settingsWindow()->close();
    }
    if (delegate.popover()->isVisible()) {
        delegate.togglePopover();
    }
    settle();
}

void FaultyKestro::command(const std::string& word) {
    mac.fileEvents.write(commandFile, word);
    settle();
}

}  // namespace kestro::drills
