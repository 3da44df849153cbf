#pragma once

#include "ui/controls/ink.h"
#include "ui/controls/text_style.h"
#include "ui/controls/view.h"

namespace kestro {

/// How a badge looks: with a dot in the sections of the dashboard, plain in the settings, or only the dot
/// where there is no room for the word, which then stays in the accessible name and the help.
enum class BadgeKind { section, settings, dot };

/// A word on a pill of its own colour.
class Badge : public View {
    Q_OBJECT

public:
    explicit Badge(BadgeKind kind, const QString& text = {}, const Ink& ink = KestroTheme::accentCool,
                   QWidget* parent = nullptr);

    /// Silent when equal.
    void setState(const QString& text, const Ink& ink);
    void setKind(BadgeKind kind);
    const QString& text() const { return text_; }

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BadgeKind kind_;
    QString text_;
    Ink ink_;
};

}  // namespace kestro
