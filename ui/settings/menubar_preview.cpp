#include "ui/settings/menubar_preview.h"

#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "ui/controls/surface_paint.h"
#include "ui/controls/text_painter.h"
#include "ui/controls/words.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <cmath>

namespace kestro {

namespace {

constexpr double kInset = 12;
constexpr double kBarHeight = 26;
constexpr double kBarPadding = 10;
constexpr double kItemGap = 16;
constexpr double kSymbolGap = 4;
constexpr double kExtraSymbol = 13;
const QColor kKeepAwakeOrange = QColor::fromRgbF(1.0F, 0.62F, 0.04F);

/// Paints an item with its right edge at `right`; returns its left edge.
double paintItem(QPainter& painter, double right, double middle, const QString& symbol, double symbolSize,
                 const QString& text, const TextStyle& style) {
    double left = right;
    if (!text.isEmpty()) {
        const double width = std::ceil(textWidth(text, style));
        left -= width;
        drawText(painter, QRectF(left, middle - kBarHeight / 2, width, kBarHeight), text, style, Qt::AlignLeft,
                 TextFit::value);
    }
    if (!symbol.isEmpty()) {
        left -= symbolSize + (text.isEmpty() ? 0 : kSymbolGap);
        SymbolPainter::paint(painter, symbol, QRectF(left, middle - symbolSize / 2, symbolSize, symbolSize),
                             KestroTheme::textPrimary());
    }
    return left;
}

}  // namespace

MenubarPreview::MenubarPreview(const KestroServices& services, QWidget* parent)
    : View(parent), services_(services) {
    setFixedHeight(kHeight);
    refresh();
}

void MenubarPreview::refresh() {
    const UserSettings& settings = services_.settings;
    readout_ =
        composeReadout(ReadoutLayout::of(settings), readoutInputs(services_.engine, settings, services_.fanManager,
                                                                  services_.keepAwake, services_.powerManager));
    showsKeepAwake_ = settings.showDedicatedKeepAwakeItem.get();
    showsFan_ = settings.showDedicatedFanItem.get();
    const auto remaining = services_.keepAwake.remainingSeconds.get();
    keepAwakeText_.clear();
    if (services_.keepAwake.isActive.get() && remaining && *remaining > 0) {
        keepAwakeText_ = QString::number(static_cast<std::int64_t>(*remaining) / 60) + QLatin1Char('m');
    }
    fanText_ = QString(Words(rawValue(services_.fanManager.currentProfile.get()))).toUpper();
    update();
}

AccessibleInfo MenubarPreview::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.name = QStringLiteral("Live menu bar preview");
    info.value = QString::fromStdString(readout_.spokenText);
    return info;
}

void MenubarPreview::paintEvent(QPaintEvent*) {
    const TextStyle text{12, kBarHeight, text_styles::w500, 0, KestroTheme::textPrimary};
    const TextStyle awake{11, kBarHeight, text_styles::w600, 0, kKeepAwakeOrange};
    const TextStyle cooling{10, kBarHeight, text_styles::w700, 0, Ink(KestroTheme::textPrimary).faded(0.62)};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bar(kInset, (height() - kBarHeight) / 2, width() - 2 * kInset, kBarHeight);
    paintRounded(painter, bar, 4, Ink(QColor(Qt::black)).faded(0.5).color());
    painter.setClipRect(bar);
    const double middle = bar.center().y();
    const ReadoutSymbol symbol = readout_.symbol.value_or(ReadoutSymbol{{}, {}, 0});
    double right = paintItem(painter, bar.right() - kBarPadding, middle, Words(symbol.name), symbol.pointSize,
                             QString::fromStdString(readout_.title).trimmed(), text);
    if (showsFan_) {
        right = paintItem(painter, right - kItemGap, middle, QStringLiteral("fanblades"), kExtraSymbol, fanText_,
                          cooling);
    }
    if (showsKeepAwake_) {
        const bool isActive = services_.keepAwake.isActive.get();
        paintItem(painter, right - kItemGap, middle,
                  isActive ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"),
                  kExtraSymbol, keepAwakeText_, awake);
    }
}

}  // namespace kestro
