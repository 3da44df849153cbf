#pragma once

#include "app/windows/dashboard_window.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/app/windows/recording_window_delegate.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QEvent>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QRect>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace kestro {

/// Fixture for a dashboard window without content; windows move without animation.
struct DashboardWindowTest : testing::Test {
    DashboardWindowTest() { motion::setReduced(true); }
    ~DashboardWindowTest() override { motion::setReduced(false); }

    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    KestroDashboardWindow window{delegate, system, [](QWidget* parent) { return new QWidget(parent); }, 788};
    const QRect available = system.available;

    void show() {
        window.fitToScreen();
        system.makeKeyAndOrderFront(window);
        QApplication::processEvents();
        delegate.events.clear();
    }

    void sendMouse(QEvent::Type type, QPoint position, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent event(type, position, window.mapToGlobal(position), Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }

    void hover(QPoint position) {
        QHoverEvent event(QEvent::HoverMove, position, window.mapToGlobal(position), position);
        QApplication::sendEvent(&window, &event);
    }

    void doubleClick(QPoint position) {
        QMouseEvent event(QEvent::MouseButtonDblClick, position, window.mapToGlobal(position), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.windowHandle(), &event);
    }
};

}  // namespace kestro
