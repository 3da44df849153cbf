#include "ui/widgets/ruled_index_row.h"

#include "ui/format/unmeasured.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double lineHeight = 14;
constexpr double detailTop = 13;
constexpr double detailHeight = 11;
constexpr double ruleHeight = 2;
constexpr double ruleTrackOpacity = 0.08;
constexpr double lowRow = 24;
constexpr double roomyRule = 18;
constexpr double roomyDetailRule = 28;
constexpr double valueGap = 6;

double ruleAboveEnd(double rowHeight, bool hasDetail, RowSpacing spacing) {
    if (hasDetail) {
        return spacing == RowSpacing::dense ? 4 : 9;
    }
    return rowHeight < lowRow ? 5 : 8;
}

}  // namespace

RuledIndexGeometry ruledIndexGeometry(const QSizeF& size, bool hasDetail, RowSpacing spacing) {
    RuledIndexGeometry geometry;
    geometry.line = QRectF(0, 0, size.width(), lineHeight);
    if (hasDetail) {
        geometry.detail = QRectF(0, detailTop, size.width(), detailHeight);
    }
    double top = size.height() - ruleAboveEnd(size.height(), hasDetail, spacing);
    if (spacing == RowSpacing::roomy) {
        top = std::min(top, hasDetail ? roomyDetailRule : roomyRule);
    }
    geometry.rule = QRectF(0, top, size.width(), ruleHeight);
    return geometry;
}

RuledIndexRow::RuledIndexRow(bool isCompact, QWidget* parent) : View(parent), isCompact_(isCompact) {}

void RuledIndexRow::setContent(const RuledIndexContent& content) {
    if (content == content_) {
        return;
    }
    const bool isDetailMoved = content.detail.isEmpty() != content_.detail.isEmpty();
    const bool areLabelsChanged = content.label != content_.label ||
                                  content.compactLabel != content_.compactLabel ||
                                  content.shortLabel != content_.shortLabel || content.detail != content_.detail;
    const bool isMeasuredChanged = content.isMeasured != content_.isMeasured;
    const bool isValueChanged =
        isMeasuredChanged || content.value != content_.value || content.valueTint != content_.valueTint;
    const bool isRuleChanged = isMeasuredChanged || content.progressFraction != content_.progressFraction ||
                               content.progressTint != content_.progressTint;
    const QRectF valueBefore = valueArea();
    content_ = content;
    if (isMeasuredChanged) {
        setHelp(content.isMeasured ? QString() : unmeasuredHelp());
    }
    if (isDetailMoved) {
        update();
        return;
    }
    const RuledIndexGeometry geometry = geometryNow();
    if (areLabelsChanged) {
        update(touchedPoints(*this, geometry.line.united(geometry.detail)));
    } else if (isValueChanged) {
        const QRectF values = valueBefore.united(valueArea());
        const double roomLeft = values.left() - valueGap;
        const bool isLabelTight = textWidth(content_.label, text_styles::rowLabel) > roomLeft;
        update(touchedPoints(*this, isLabelTight ? geometry.line : values));
    }
    if (isRuleChanged) {
        update(touchedPoints(*this, geometry.rule));
    }
}

void RuledIndexRow::setCompact(bool isCompact) {
    if (isCompact != isCompact_) {
        isCompact_ = isCompact;
        update();
    }
}

void RuledIndexRow::setSpacing(RowSpacing spacing) {
    if (spacing != spacing_) {
        spacing_ = spacing;
        update();
    }
}

AccessibleInfo RuledIndexRow::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.name = content_.label + QStringLiteral(", ") + content_.value;
    if (!content_.detail.isEmpty()) {
        info.name += QStringLiteral(", ") + content_.detail;
    }
    return info;
}

void RuledIndexRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const RuledIndexGeometry geometry = geometryNow();
    TextStyle value = text_styles::rowValue;
    value.ink = content_.isMeasured ? content_.valueTint : figureInk(KestroTheme::textPrimary, false);
    drawText(painter, geometry.line, content_.value, value, Qt::AlignRight, TextFit::value);
    drawText(painter, geometry.line.adjusted(0, 0, -valueArea().width() - valueGap, 0), shownLabel(),
             text_styles::rowLabel);
    drawText(painter, geometry.detail, content_.detail, text_styles::rowDetail);
    if (content_.isMeasured && content_.progressFraction > 0) {
        paintBar(painter, geometry.rule, content_.progressFraction, Ink::white(ruleTrackOpacity).color(),
                 content_.progressTint.color());
    } else {
        // Centred where the rule would be.
        paintHairline(painter, geometry.rule.left(), geometry.rule.right(), geometry.rule.center().y() - 0.25);
    }
}

RuledIndexGeometry RuledIndexRow::geometryNow() const {
    return ruledIndexGeometry(designRect(*this).size(), !content_.detail.isEmpty(), spacing_);
}

QRectF RuledIndexRow::valueArea() const {
    const double width = std::ceil(textWidth(content_.value, text_styles::rowValue));
    QRectF area = geometryNow().line;
    area.setLeft(std::max(area.left(), area.right() - width));
    return area;
}

const QString& RuledIndexRow::shownLabel() const {
    const QString& label = isCompact_ && !content_.compactLabel.isEmpty() ? content_.compactLabel : content_.label;
    const bool isTooWide = textWidth(label, text_styles::rowLabel) > labelRoom();
    return isTooWide && !content_.shortLabel.isEmpty() ? content_.shortLabel : label;
}

double RuledIndexRow::labelRoom() const {
    return valueArea().left() - valueGap;
}

}  // namespace kestro
