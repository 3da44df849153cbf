#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"
#include "ui/theme/kestro_theme.h"

namespace kestro {

/// The areas of the parts of a row of a given height.
struct RuledIndexGeometry {
    QRectF line;    ///< label at its left, value at its right
    QRectF detail;  ///< empty without a detail
    QRectF rule;
};

/// How rows follow each other. In high dashboards they are roomy: the rule stays near its own label.
enum class RowSpacing { dense, regular, roomy };

/// The line is 14 high, the detail is at 13–24. The rule's top is 8 above the row's bottom: 9 with a detail (4 in
/// dense rows), 5 in rows lower than 24. In roomy rows it is at most 18 below the row's top, 28 with a detail.
RuledIndexGeometry ruledIndexGeometry(const QSizeF& size, bool hasDetail, RowSpacing spacing);

/// The content of a row.
struct RuledIndexContent {
    QString label;
    QString compactLabel;  ///< replaces the label when compact; empty: the label
    QString value;
    QString detail;
    double progressFraction = 0;  ///< 0..1; 0: a hairline instead of the rule
    Ink progressTint = KestroTheme::accentCool;
    Ink valueTint = KestroTheme::textPrimary;
    bool isMeasured = true;  ///< otherwise no sensor gave the value: dimmed, with a help text and without a rule

    /// Replaces a label that does not fit beside the value; empty: the label is shortened.
    QString shortLabel = {};

    friend bool operator==(const RuledIndexContent&, const RuledIndexContent&) = default;
};

/// A label and its value above a progress rule, with an optional detail between. The value keeps its width; the
/// label yields.
class RuledIndexRow : public View {
    Q_OBJECT

public:
    explicit RuledIndexRow(bool isCompact, QWidget* parent = nullptr);

    /// No-op when unchanged; otherwise repaints only the changed part: the texts or the rule.
    void setContent(const RuledIndexContent& content);
    const RuledIndexContent& content() const { return content_; }

    void setCompact(bool isCompact);
    void setSpacing(RowSpacing spacing);

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The part of the line that the value occupies.
    QRectF valueArea() const;
    RuledIndexGeometry geometryNow() const;
    const QString& shownLabel() const;
    double labelRoom() const;

    RuledIndexContent content_;
    bool isCompact_;
    RowSpacing spacing_ = RowSpacing::regular;
};

}  // namespace kestro
