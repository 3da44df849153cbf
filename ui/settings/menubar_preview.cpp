#include "ui/settings/menubar_preview.h"

#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "ui/controls/words.h"
#include "ui/format/record_text.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/status_colors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace kestro {

namespace {

constexpr double previewInset = 12;
constexpr double barHeight = 26;
constexpr double barPadding = 10;
constexpr double itemGap = 16;
constexpr double symbolGap = 4;
constexpr double extraSymbol = 13;

/// A symbol and a text beside it; either may be absent.
struct Item {
    QString symbol;
    double symbolSize = 0;
    QString text;
    TextStyle style;

    double textLeft() const { return symbol.isEmpty() ? 0 : symbolSize + (text.isEmpty() ? 0 : symbolGap); }
    double width() const { return textLeft() + std::ceil(textWidth(text, style)); }
};

void paintItem(QPainter& painter, const QRectF& area, const Item& item) {
    if (!item.symbol.isEmpty()) {
        const double top = area.center().y() - item.symbolSize / 2;
        SymbolPainter::paint(painter, item.symbol, QRectF(area.left(), top, item.symbolSize, item.symbolSize),
                             KestroTheme::textPrimary());
    }
    drawText(painter, area.adjusted(item.textLeft(), 0, 0, 0), item.text, item.style);
}

}  // namespace

std::vector<QRectF> previewItems(const QRectF& bar, std::vector<double> widths) {
    std::vector<QRectF> areas(widths.size());
    if (widths.empty()) {
        return areas;
    }
    const double gaps = itemGap * static_cast<double>(widths.size() - 1);
    const double others = std::accumulate(widths.begin(), widths.end() - 1, 0.0);
    const double room = bar.width() - 2 * barPadding - gaps - others;
    widths.back() = std::min(widths.back(), std::max(0.0, room));
    double right = bar.right() - barPadding;
    for (std::size_t i = widths.size(); i-- > 0;) {
        areas[i] = QRectF(right - widths[i], bar.top(), widths[i], bar.height());
        right = areas[i].left() - itemGap;
    }
    return areas;
}

MenubarPreview::MenubarPreview(const KestroServices& services, QWidget* parent)
    : View(parent), services_(services) {
    setFixedHeight(fixedHeight);
    refresh();
}

void MenubarPreview::refresh() {
    const UserSettings& settings = services_.settings;
    Content content{
        .readout = composeReadout(ReadoutLayout::of(settings),
                                  readoutInputs(services_.engine, settings, services_.fanManager,
                                                services_.keepAwake, services_.powerManager)),
        .showsKeepAwake = settings.showDedicatedKeepAwakeItem.get(),
        .isAwake = services_.keepAwake.isActive.get(),
        .keepAwakeText = keepAwakeMinutes(services_.keepAwake),
        .showsFan = settings.showDedicatedFanItem.get(),
        .fanText = QString(Words(rawValue(services_.fanManager.currentProfile.get()))).toUpper(),
    };
    if (content != content_) {
        content_ = std::move(content);
        update();
    }
}

AccessibleInfo MenubarPreview::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.name = QStringLiteral("Live menu bar preview");
    info.value = QString::fromStdString(content_.readout.spokenText);
    return info;
}

void MenubarPreview::paintEvent(QPaintEvent*) {
    const TextStyle text{12, barHeight, text_styles::w500, 0, KestroTheme::textPrimary};
    const TextStyle awake{11, barHeight, text_styles::w600, 0, status_colors::orangeOnDark()};
    const TextStyle cooling{10, barHeight, text_styles::w700, 0,
                            Ink(KestroTheme::textPrimary).faded(status_colors::secondaryOpacity)};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bar(previewInset, (height() - barHeight) / 2, width() - 2 * previewInset, barHeight);
    paintRounded(painter, bar, 4, Ink(QColor(Qt::black)).faded(0.5).color());
    painter.setClipRect(bar);
    std::vector<Item> items;
    if (content_.showsKeepAwake) {
        items.push_back(
            {content_.isAwake ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"),
             extraSymbol, content_.keepAwakeText, awake});
    }
    if (content_.showsFan) {
        items.push_back({QStringLiteral("fanblades"), extraSymbol, content_.fanText, cooling});
    }
    const ReadoutSymbol symbol = content_.readout.symbol.value_or(ReadoutSymbol{{}, {}, 0});
    items.push_back({Words(symbol.name), static_cast<double>(symbol.pointSize),
                     QString::fromStdString(content_.readout.title).trimmed(), text});
    std::vector<double> widths;
    for (const Item& item : items) {
        widths.push_back(item.width());
    }
    const std::vector<QRectF> areas = previewItems(bar, std::move(widths));
    for (std::size_t i = 0; i < items.size(); ++i) {
        paintItem(painter, areas[i], items[i]);
    }
}

}  // namespace kestro
