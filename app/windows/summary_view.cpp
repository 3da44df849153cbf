#include "app/windows/summary_view.h"

#include "core/engine/telemetry_engine.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>

namespace kestro {

SummaryView::SummaryView(const KestroServices& services, const QString& title, QWidget* parent)
    : QWidget(parent), services_(services), title_(title) {
    subscriptions_.push_back(services_.engine.cpu.subscribe([this](const CPUTelemetry&) { update(); }));
    subscriptions_.push_back(services_.engine.memory.subscribe([this](const MemoryTelemetry&) { update(); }));
}

void SummaryView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), KestroTheme::ground());
    const QRect inner = rect().adjusted(14, 14, -14, -14);
    painter.setPen(KestroTheme::textPrimary());
    painter.setFont(KestroFonts::font(13, QFont::Bold));
    painter.drawText(inner, Qt::AlignLeft | Qt::AlignTop, title_);
    painter.setPen(KestroTheme::textSecondary());
    painter.setFont(KestroFonts::font(11));
    painter.drawText(inner.adjusted(0, 28, 0, 0), Qt::AlignLeft | Qt::AlignTop, values());
}

QString SummaryView::values() const {
    return QString::fromUtf8("CPU %1%\nRAM %2%\nSoC %3")
        .arg(services_.engine.cpu.get().totalUsage, 0, 'f', 0)
        .arg(services_.engine.memory.get().usedPercentage(), 0, 'f', 0)
        .arg(QString::fromStdString(services_.engine.formatTemp(services_.engine.thermals.get().averageSoCTemp)));
}

}  // namespace kestro
