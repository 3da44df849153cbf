#include "ui/dashboard/io_section.h"

#include "core/engine/telemetry_engine.h"
#include "core/power/power_mode_manager.h"
#include "ui/controls/words.h"
#include "ui/format/figure_text.h"
#include "ui/format/unmeasured.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double blockGap = 10;
constexpr double labelHeight = 14;
constexpr double labelRise = 1;
constexpr double arrowSize = 9;
constexpr double arrowGap = 4;
constexpr double historyGap = 2;
constexpr double nameGap = 6;
constexpr double lowBattery = 20;

QString rateText(double bytesPerSecond) {
    return Words(formatRate(bytesPerSecond));
}

RuledIndexContent plainRow(const char* label, const char* shortLabel, const QString& value) {
    RuledIndexContent content;
    content.label = Words(label);
    content.shortLabel = Words(shortLabel);
    content.value = value;
    return content;
}

RuledIndexContent batteryFigure(const char* label, const char* shortLabel, const QString& value,
                                const PowerTelemetry& power) {
    RuledIndexContent content = plainRow(label, shortLabel, value);
    content.isMeasured = power.hasBattery;
    return content;
}

RuledIndexContent batteryRow(const PowerTelemetry& power, bool compact) {
    if (!power.hasBattery) {
        return batteryFigure("Battery", "", QStringLiteral("AC"), power);
    }
    RuledIndexContent content = batteryFigure("Battery", "", percentText(power.percentage), power);
    content.detail = compact ? QString() : QString(Words(power.statusDescription()));
    content.progressFraction = std::clamp(power.percentage / 100, 0.0, 1.0);
    content.progressTint =
        power.percentage <= lowBattery ? KestroTheme::accentCritical : KestroTheme::accentNominal;
    return content;
}

}  // namespace

std::array<RuledIndexContent, 5> ioRows(const NetworkTelemetry& network, const PowerTelemetry& power,
                                        SystemPowerMode mode, const std::string& uptime, bool compact) {
    return {plainRow("Local IP", "IP", Words(network.localIP)), batteryRow(power, compact),
            batteryFigure("Condition", "Cond.", Words(power.condition), power),
            plainRow("Power Mode", "Mode", Words(shortTag(mode))), plainRow("Uptime", "Up", Words(uptime))};
}

IOSection::IOSection(const KestroServices& services, QWidget* parent)
    : DashboardSection(QStringLiteral("arrow.up.arrow.down"), QStringLiteral("I/O & Power"), QStringLiteral("I/O"),
                       parent),
      services_(services),
      download_(makeDirection(QStringLiteral("arrow.down"), QStringLiteral("Download"), KestroTheme::accentCool)),
      upload_(makeDirection(QStringLiteral("arrow.up"), QStringLiteral("Upload"), KestroTheme::accentWarning)) {
    for (RuledIndexRow*& row : rows_) {
        row = new RuledIndexRow(false, this);
    }
    const TelemetryEngine& engine = services_.engine;
    follow(engine.network, [this] {
        showRates();
        showRows();
    });
    follow(engine.netDownHistory, [this] { download_.history->setData(services_.engine.netDownHistory.get()); });
    follow(engine.netUpHistory, [this] { upload_.history->setData(services_.engine.netUpHistory.get()); });
    follow(engine.power, [this] { showRows(); });
    follow(services_.powerManager.currentMode, [this] { showRows(); });
}

IOSection::Direction IOSection::makeDirection(const QString& symbol, const QString& name, const Ink& ink) {
    Direction direction{new SymbolView(symbol, arrowSize, ink, this), new TextLabel(name, this),
                        new TextLabel(QString(), this), new SparklineView(ink, std::nullopt, this)};
    direction.name->setStyle(text_styles::rowLabel);
    direction.name->setDecoration(true);
    direction.rate->setStyle(text_styles::rowValue);
    direction.rate->setFit(TextFit::value);
    direction.rate->setTextAlignment(Qt::AlignRight);
    direction.history->setSpoken(name, rateText);
    direction.history->setTopText(rateText);
    return direction;
}

void IOSection::refresh() {
    showRates();
    showRows();
    download_.history->setData(services_.engine.netDownHistory.get());
    upload_.history->setData(services_.engine.netUpHistory.get());
}

void IOSection::showRate(const Direction& direction, double bytesPerSecond) const {
    const bool isMeasured = services_.engine.measured().rates;
    const QString rate = isMeasured ? rateText(bytesPerSecond) : pendingFigure();
    direction.rate->setText(rate);
    direction.rate->setSpokenText(direction.name->text() + QStringLiteral(", ") +
                                  (isMeasured ? rate : pendingWords()));
}

void IOSection::showRates() {
    const NetworkTelemetry& network = services_.engine.network.get();
    showRate(download_, network.downloadBytesPerSec);
    showRate(upload_, network.uploadBytesPerSec);
    setMeta(Words(network.primaryInterface), QStringLiteral("Interface"));
}

void IOSection::showRows() {
    const TelemetryEngine& engine = services_.engine;
    const auto rows = ioRows(engine.network.get(), engine.power.get(), services_.powerManager.currentMode.get(),
                             engine.uptimeString(), isCompact(grid().tier));
    bool isMoved = false;
    for (size_t i = 0; i < rows.size(); ++i) {
        isMoved = isMoved || rows[i].detail.isEmpty() != rows_[i]->content().detail.isEmpty();
        rows_[i]->setContent(rows[i]);
    }
    if (isMoved) {
        arrangeAgain();
    }
}

void IOSection::arrange(const SectionGrid& grid) {
    const double block = (grid.heroHeight - blockGap) / 2;
    arrangeDirection(download_, QRectF(0, SectionGrid::heroTop, grid.width, block));
    arrangeDirection(upload_, QRectF(0, grid.heroBottom() - block, grid.width, block));
    download_.history->showTop(grid.namesScales);
    upload_.history->showTop(grid.namesScales);
    double top = grid.rowsTop;
    for (RuledIndexRow* row : rows_) {
        top = placeRow(*row, top, grid);
    }
}

void IOSection::arrangeDirection(const Direction& direction, const QRectF& area) const {
    const double line = area.top() - labelRise;
    const double arrowTop = line + (labelHeight - arrowSize) / 2;
    place(*direction.arrow, QRectF(area.left(), arrowTop, arrowSize, arrowSize));
    const double textLeft = area.left() + arrowSize + arrowGap;
    const double name =
        std::min(std::ceil(textWidth(direction.name->text(), text_styles::rowLabel)), area.width() / 2);
    place(*direction.name, QRectF(textLeft, line, name, labelHeight));
    const double rateLeft = textLeft + name + nameGap;
    place(*direction.rate, QRectF(rateLeft, line, area.right() - rateLeft, labelHeight));
    constexpr int bleed = SparklineView::lineBleed;
    place(*direction.history,
          area.adjusted(0, labelHeight + historyGap, 0, 0).adjusted(-bleed, -bleed, bleed, bleed));
}

}  // namespace kestro
