#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"
#include "ui/paint/text_style.h"

namespace kestro {

/// The look of a badge: with a dot in the dashboard's sections, plain in the settings, or only the dot where the
/// word does not fit. The word then remains in the accessible name and the help.
enum class BadgeKind { section, settings, dot };

/// A word on a coloured pill.
class Badge : public View {
    Q_OBJECT

public:
    explicit Badge(BadgeKind kind, const QString& text = {}, const Ink& ink = KestroTheme::accentCool,
                   QWidget* parent = nullptr);

    /// No-op when unchanged.
    void setState(const QString& text, const Ink& ink);
    void setKind(BadgeKind kind);

    /// Replaces the word as the accessible name; empty: the word itself. Announces nothing.
    void setSpokenText(const QString& text) { spokenText_ = text; }
    const QString& text() const { return text_; }

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BadgeKind kind_;
    QString text_;
    Ink ink_;
    QString spokenText_;
};

}  // namespace kestro
