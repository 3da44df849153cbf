#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <functional>
#include <utility>

namespace kestro {

/// Ends the program when the toolkit is to quit it, on Command-Q for example. It would close all windows first,
/// and stop there because the dashboard only hides. Main thread, after the application object.
class QuitRequests final : public QObject {
public:
    explicit QuitRequests(std::function<void()> terminate) : terminate_(std::move(terminate)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) {
            return QObject::eventFilter(watched, event);
        }
        event->accept();
        terminate_();
        return true;
    }

private:
    const std::function<void()> terminate_;
};

}  // namespace kestro
