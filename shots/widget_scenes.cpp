#include "shots/scene.h"
#include "shots/sheet.h"
#include "ui/controls/words.h"
#include "ui/widgets/core_matrix_view.h"
#include "ui/widgets/load_bar.h"
#include "ui/widgets/metric_gauge.h"
#include "ui/widgets/ruled_index_row.h"
#include "ui/widgets/sparkline_view.h"

#include <cmath>

namespace kestro::shots {

namespace {

std::vector<double> history() {
    std::vector<double> values;
    for (int i = 0; i < 30; ++i) {
        values.push_back(9 + (i * 7) % 5 + 38 * std::exp(-(i - 14) * (i - 14) / 9.0));
    }
    return values;
}

std::vector<CoreLoad> cores(int count) {
    std::vector<CoreLoad> made;
    for (int i = 0; i < count; ++i) {
        const bool isFirst = i < count * 2 / 3;
        made.push_back({i, isFirst ? "Super" : "Perf", isFirst, static_cast<double>((i * 37 + 11) % 100)});
    }
    return made;
}

void addSparklines(Sheet& sheet) {
    const std::vector<double> empty;
    int y = 20;
    for (const auto& data : {history(), std::vector(30, 0.0), empty}) {
        auto* limited = new SparklineView(KestroTheme::accentCool, 100.0);
        limited->setData(data);
        sheet.place(limited, QRect(20, y, 206, 44));
        auto* free = new SparklineView(KestroTheme::accentWarning);
        free->setData(data);
        sheet.place(free, QRect(246, y, 206, 44));
        y += 60;
    }
}

void addGauges(Sheet& sheet) {
    int y = 16;
    for (const bool isCompact : {false, true}) {
        int x = 470;
        for (const double rpm : {0.0, 1420.0, 7300.0, 12000.0}) {
            auto* gauge = new MetricGauge(isCompact);
            gauge->setContent({QStringLiteral("Left Fan"), QStringLiteral("of 7300 RPM"), rpm, 0, 7300,
                               QStringLiteral("RPM"), KestroTheme::accentCool});
            gauge->setTextScale(gauge->fittingTextScale());
            sheet.place(gauge, QRect(x, y, 92, gauge->sizeHint().height()));
            x += 94;
        }
        y += 108;
    }
}

void addMatrices(Sheet& sheet) {
    struct Case {
        int cores;
        bool isCompact;
        QRect area;
    };
    for (const Case& one : {Case{12, false, {20, 220, 206, 126}}, Case{12, true, {246, 220, 122, 126}},
                            Case{12, true, {388, 220, 122, 80}}, Case{64, false, {530, 220, 150, 150}},
                            Case{256, false, {700, 220, 150, 150}}}) {
        auto* matrix = new CoreMatrixView(one.isCompact);
        matrix->setCores(cores(one.cores));
        sheet.place(matrix, one.area);
    }
}

void addRows(Sheet& sheet) {
    const auto add = [&sheet](const QRect& area, bool isCompact, RowSpacing spacing,
                              const RuledIndexContent& content) {
        auto* row = new RuledIndexRow(isCompact);
        row->setSpacing(spacing);
        row->setContent(content);
        sheet.place(row, area);
    };
    const RuledIndexContent temperature{
        Words("SoC Junction Temp"), Words("SoC Die"),        Words("52.4°C"), Words("Die Average"), 0.5,
        KestroTheme::accentCool,    KestroTheme::accentCool,
    };
    RuledIndexContent plain{Words("Wired"), {}, Words("3.4 GB"), {}, 0.11};
    RuledIndexContent ruled{Words("Local IP"), {}, Words("192.168.1.24"), {}, 0};
    RuledIndexContent longOne{
        Words("A label that has to give way to its value"), {}, Words("0.6 of 2.0 GB"), {}, 1};
    add({20, 400, 206, 38}, false, RowSpacing::regular, temperature);
    add({20, 438, 206, 28}, false, RowSpacing::regular, plain);
    add({20, 466, 206, 28}, false, RowSpacing::regular, ruled);
    add({20, 494, 206, 22}, false, RowSpacing::regular, longOne);
    add({246, 400, 165, 38}, true, RowSpacing::regular, temperature);
    add({246, 438, 165, 30}, true, RowSpacing::dense, temperature);
    add({246, 468, 165, 20}, true, RowSpacing::regular, plain);
}

void addBars(Sheet& sheet) {
    int y = 404;
    for (const double fraction : {0.0, 0.005, 0.24, 1.0}) {
        auto* bar = new LoadBar;
        sheet.place(bar, QRect(440, y, 198, LoadBar::fixedHeight));
        bar->setFraction(fraction);
        y += 14;
    }
}

std::unique_ptr<QWidget> widgetSheet(SimulatedServices&) {
    auto sheet = std::make_unique<Sheet>(QSize(870, 540));
    addSparklines(*sheet);
    addGauges(*sheet);
    addMatrices(*sheet);
    addRows(*sheet);
    addBars(*sheet);
    return sheet;
}

}  // namespace

std::vector<Scene> widgetScenes() {
    Scene sheet;
    sheet.name = QStringLiteral("widgets");
    sheet.make = widgetSheet;
    sheet.atFractionalScales = true;
    return {std::move(sheet)};
}

}  // namespace kestro::shots
