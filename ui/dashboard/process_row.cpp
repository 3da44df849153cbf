#include "ui/dashboard/process_row.h"

#include "ui/controls/words.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestro {

namespace {

constexpr double bytesPerMebibyte = 1048576.0;
constexpr double nameGap = 6;
constexpr double markSize = 8;
constexpr double markGap = 4;
constexpr double trackOpacity = 0.08;

const TextStyle nameStyle{10, 14, QFont::Medium, 0, KestroTheme::textPrimary};

TextStyle columnStyle(bool isSorting) {
    return {10, 14, isSorting ? QFont::DemiBold : QFont::Medium, 0,
            isSorting ? KestroTheme::textPrimary : KestroTheme::textSecondary};
}

}  // namespace

ProcessRowContent processRowContent(const ProcessInfoItem& process, bool sortsByMemory, std::uint64_t totalBytes) {
    ProcessRowContent content;
    content.name = Words(process.name);
    content.command = Words(process.fullCommand);
    content.cpu = QString::number(process.cpuPercent, 'f', 1);
    content.memory = Words(process.memoryString);
    const double total = static_cast<double>(totalBytes) / bytesPerMebibyte;
    const double share = sortsByMemory ? (total > 0 ? process.memoryMB / total : 0) : process.cpuPercent / 100;
    content.share = share > 0 ? std::min(share, 1.0) : 0;
    content.isSystem = process.isSystemProcess;
    content.sortsByMemory = sortsByMemory;
    return content;
}

ProcessRow::ProcessRow(QWidget* parent) : View(parent) {}

void ProcessRow::setContent(const ProcessRowContent& content) {
    if (content == content_) {
        return;
    }
    const ProcessRowContent before = std::exchange(content_, content);
    setHelp(content.command);
    if (content.name != before.name || content.isSystem != before.isSystem ||
        content.sortsByMemory != before.sortsByMemory) {
        update();
        return;
    }
    const RuledIndexGeometry geometry = ruledIndexGeometry(designRect(*this).size(), false, spacing_);
    const double line = geometry.line.height();
    const double right = geometry.line.right();
    if (content.memory != before.memory) {
        update(touchedPoints(*this, QRectF(right - memoryWidth_, 0, memoryWidth_, line)));
    }
    if (content.cpu != before.cpu) {
        update(touchedPoints(*this, QRectF(right - memoryWidth_ - cpuWidth_, 0, cpuWidth_, line)));
    }
    if (content.share != before.share) {
        update(touchedPoints(*this, geometry.rule));
    }
}

void ProcessRow::setColumns(double cpu, double memory) {
    if (cpu != cpuWidth_ || memory != memoryWidth_) {
        cpuWidth_ = cpu;
        memoryWidth_ = memory;
        update();
    }
}

void ProcessRow::setSpacing(RowSpacing spacing) {
    if (spacing != spacing_) {
        spacing_ = spacing;
        update();
    }
}

AccessibleInfo ProcessRow::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.name = QStringLiteral("%1, %2 percent, %3").arg(singleLine(content_.name), content_.cpu, content_.memory);
    if (content_.isSystem) {
        info.name += QStringLiteral(", system process");
    }
    return info;
}

void ProcessRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const RuledIndexGeometry geometry = ruledIndexGeometry(designRect(*this).size(), false, spacing_);
    double right = geometry.line.right();
    const auto column = [&](double width, const QString& text, bool isSorting) {
        if (width > 0) {
            drawText(painter, QRectF(right - width, 0, width, geometry.line.height()), text,
                     columnStyle(isSorting), Qt::AlignRight, TextFit::value);
            right -= width;
        }
    };
    column(memoryWidth_, content_.memory, content_.sortsByMemory);
    column(cpuWidth_, content_.cpu, !content_.sortsByMemory);
    paintName(painter, QRectF(0, 0, std::max(0.0, right - nameGap), geometry.line.height()));
    if (!content_.name.isEmpty()) {
        paintBar(painter, geometry.rule, content_.share, Ink::white(trackOpacity).color(),
                 KestroTheme::accentCool());
    }
}

void ProcessRow::paintName(QPainter& painter, const QRectF& room) const {
    drawText(painter, room, content_.name, nameStyle);
    const double name = textWidth(content_.name, nameStyle);
    if (!content_.isSystem || name + markGap + markSize > room.width()) {
        return;
    }
    const QRectF mark(name + markGap, (room.height() - markSize) / 2, markSize, markSize);
    SymbolPainter::paint(painter, QStringLiteral("gearshape"), mark, KestroTheme::textTertiary());
}

}  // namespace kestro
