#pragma once

#include "core/platform/user_defaults.h"
#include "core/settings/user_settings.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QHoverEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace kestro {

/// Empty preferences: every setting starts with its default.
class NoPreferences final : public UserDefaults {
public:
    std::optional<PreferenceValue> object(std::string_view) const override { return std::nullopt; }
    void set(std::string_view, PreferenceValue) override {}
};

/// Fixture for painted views, with default settings for the theme and reduced motion.
class ViewTest : public testing::Test {
protected:
    ViewTest() : settings_(preferences_) {
        KestroTheme::bind(&settings_);
        motion::setReduced(true);
    }

    ~ViewTest() override {
        motion::setReduced(false);
        KestroTheme::bind(nullptr);
    }

    static QImage picture(QWidget& widget) {
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    static void clickAt(QWidget& widget, const QPointF& position) {
        send(widget, QEvent::MouseButtonPress, position, Qt::LeftButton);
        send(widget, QEvent::MouseButtonRelease, position, Qt::NoButton);
    }

    static void send(QWidget& widget, QEvent::Type type, const QPointF& position, Qt::MouseButtons held) {
        QMouseEvent event(type, position, widget.mapToGlobal(position),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }

    static void hoverAt(QWidget& widget, const QPointF& position) {
        QHoverEvent event(QEvent::HoverEnter, position, widget.mapToGlobal(position), QPointF(-1, -1));
        QApplication::sendEvent(&widget, &event);
    }

    static void press(QWidget& widget, int key) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &up);
    }

    NoPreferences preferences_;
    UserSettings settings_;
};

/// Counts the paint events of a widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

/// Accumulates the region that a widget repaints.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
    QRegion painted;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
};

}  // namespace kestro
