#pragma once

#include "shell/status_bar.h"
#include "ui/controls/transition.h"
#include "ui/controls/view.h"

#include <functional>

namespace kestro {

/// One item on the strip: symbol and title, highlighted under the pointer. A click counts when the button is
/// released over the item. Changed figures are not announced, but the description is always current. Main
/// thread.
class StripItemView : public View {
public:
    using ClickHandler = std::function<void(StatusClick click, bool controlHeld)>;

    StripItemView(ClickHandler onClick, QWidget* parent);

    /// Shows new content and reserves space for it: the width grows with the text, up to that of the widest
    /// title, and shrinks only when the widest title changes. True if the width changed.
    bool setContent(const StatusContent& content);

    const StatusContent& content() const { return content_; }

    /// The width that the item needs.
    int wantedWidth() const { return wantedWidth_; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    ClickHandler onClick_;
    StatusContent content_;
    Transition hover_;
    int wantedWidth_;
    Qt::MouseButton pressed_ = Qt::NoButton;
};

}  // namespace kestro
