#include "ui/dashboard/compute_section.h"

#include "core/engine/telemetry_engine.h"
#include "ui/controls/words.h"
#include "ui/format/figure_text.h"
#include "ui/format/record_text.h"
#include "ui/format/unmeasured.h"

#include <optional>

namespace kestro {

namespace {

constexpr double figureHeight = 30;
constexpr double historyTop = 68;
constexpr double shareLabelTop = 1;
constexpr double shareValueTop = 14;
constexpr double shareLabelLine = 13;
constexpr double shareValueLine = 14;
constexpr double matrixGap = 6;
constexpr double denseMatrixGap = 2;

const TextStyle shareLabel{9, shareLabelLine, QFont::Medium, 0, KestroTheme::textSecondary};
const TextStyle shareValue{10, shareValueLine, QFont::DemiBold, 0, KestroTheme::textPrimary};

double figureSize(SectionTier tier) {
    switch (tier) {
        case SectionTier::full:
            return 30;
        case SectionTier::compact:
            return 26;
        case SectionTier::tight:
            break;
    }
    return 22;
}

double shareWidth(SectionTier tier) {
    switch (tier) {
        case SectionTier::full:
            return 43;
        case SectionTier::compact:
            return 31;
        case SectionTier::tight:
            break;
    }
    return 34;
}

/// What the first share's column can leave to the figure at its left: its text, at most "100.0", is aligned right.
double firstShareSlack(SectionTier tier) {
    return tier == SectionTier::full ? 10 : 0;
}

QString shortened(const QString& clusterName) {
    if (clusterName == QStringLiteral("Performance")) {
        return QStringLiteral("Perf");
    }
    return clusterName == QStringLiteral("Efficiency") ? QStringLiteral("Eff") : clusterName;
}

QString coresText(std::int64_t count) {
    return count == 1 ? QStringLiteral("1 core") : QStringLiteral("%1 cores").arg(count);
}

RuledIndexContent clusterRow(const Words& name, std::int64_t cores, std::optional<double> load, bool compact) {
    RuledIndexContent content;
    content.label = name;
    content.compactLabel = shortened(name);
    content.value = load ? percentText(*load) : pendingFigure();
    content.detail = compact ? QString() : coresText(cores);
    content.progressFraction = load.value_or(0) / 100;
    return content;
}

}  // namespace

std::vector<RuledIndexContent> clusterRows(const CPUTelemetry& cpu, bool isMeasured, bool compact) {
    const auto measured = [isMeasured](double load) { return isMeasured ? std::optional(load) : std::nullopt; };
    std::vector rows{clusterRow(cpu.cluster0Name, cpu.cluster0Count, measured(cpu.cluster0Usage), compact)};
    if (hasSecondCluster(cpu)) {
        rows.push_back(clusterRow(cpu.cluster1Name, cpu.cluster1Count, measured(cpu.cluster1Usage), compact));
    }
    return rows;
}

ComputeSection::ComputeSection(const KestroServices& services, QWidget* parent)
    : DashboardSection(QStringLiteral("cpu"), QStringLiteral("Compute"), {}, parent),
      engine_(services.engine),
      total_(new DisplayFigure(QStringLiteral("CPU load"), QStringLiteral("%"), this)),
      shares_{Share{QStringLiteral("User"), QStringLiteral("User")},
              Share{QStringLiteral("System"), QStringLiteral("Sys")},
              Share{QStringLiteral("Idle"), QStringLiteral("Idle")}},
      history_(new SparklineView(KestroTheme::accentCool, 100.0, this)),
      clusters_{new RuledIndexRow(false, this), new RuledIndexRow(false, this)},
      matrix_(new CoreMatrixView(false, this)) {
    for (Share& share : shares_) {
        share.label = new TextLabel(share.name, this);
        share.label->setStyle(shareLabel);
        share.label->setDecoration(true);
        share.value = new TextLabel(QString(), this);
        share.value->setStyle(shareValue);
        share.value->setFit(TextFit::value);
        for (TextLabel* text : {share.label, share.value}) {
            text->setTextAlignment(Qt::AlignRight);
        }
    }
    history_->setSpoken(QStringLiteral("CPU"), wholeText, QStringLiteral(" percent"));
    history_->setTopText(percentText);
    follow(engine_.cpu, [this] { showCPU(); });
    follow(engine_.cpuHistory, [this] { showHistory(); });
}

void ComputeSection::refresh() {
    showCPU();
    showHistory();
}

void ComputeSection::showCPU() {
    const CPUTelemetry& cpu = engine_.cpu.get();
    setMeta(coresText(cpu.coreCount));
    const bool isMeasured = engine_.measured().load;
    total_->setFigure(isMeasured ? wholeText(cpu.totalUsage) : pendingFigure());
    const std::array usages{cpu.userUsage, cpu.systemUsage, cpu.idleUsage};
    for (size_t i = 0; i < shares_.size(); ++i) {
        const QString usage = isMeasured ? oneDecimalText(usages[i]) : pendingFigure();
        const QString words = isMeasured ? usage + QStringLiteral(" percent") : pendingWords();
        shares_[i].value->setText(usage);
        shares_[i].value->setSpokenText(shares_[i].name + QStringLiteral(", ") + words);
    }
    const auto rows = clusterRows(cpu, isMeasured, isCompact(grid().tier));
    for (size_t i = 0; i < rows.size(); ++i) {
        clusters_[i]->setContent(rows[i]);
    }
    matrix_->setMeasured(isMeasured);
    matrix_->setCores(cpu.coreLoads);
    if (rows.size() != shownClusters_) {
        shownClusters_ = rows.size();
        arrangeAgain();
    }
}

void ComputeSection::showHistory() {
    history_->setData(engine_.cpuHistory.get());
}

void ComputeSection::arrange(const SectionGrid& grid) {
    const auto rows = clusterRows(engine_.cpu.get(), engine_.measured().load, isCompact(grid.tier));
    total_->setSize(figureSize(grid.tier));
    const double shares = shareWidth(grid.tier) * (grid.tier == SectionTier::tight ? 2 : 3);
    place(*total_,
          QRectF(0, SectionGrid::heroTop, grid.width - shares + firstShareSlack(grid.tier), figureHeight));
    arrangeShares(grid);
    constexpr int bleed = SparklineView::lineBleed;
    place(
        *history_,
        QRectF(0, historyTop, grid.width, grid.heroBottom() - historyTop).adjusted(-bleed, -bleed, bleed, bleed));
    history_->showTop(grid.namesScales);
    double top = grid.rowsTop;
    for (size_t i = 0; i < clusters_.size(); ++i) {
        const bool isShown = i < rows.size();
        clusters_[i]->setVisible(isShown);
        if (isShown) {
            clusters_[i]->setContent(rows[i]);
            top = placeRow(*clusters_[i], top, grid);
        }
    }
    top += grid.spacing == RowSpacing::dense ? denseMatrixGap : matrixGap;
    matrix_->setCompact(isCompact(grid.tier));
    place(*matrix_, QRectF(0, top, grid.width, std::max(0.0, grid.height - top)));
}

void ComputeSection::arrangeShares(const SectionGrid& grid) {
    const bool isTight = grid.tier == SectionTier::tight;
    const size_t shown = isTight ? 2 : 3;
    const double width = shareWidth(grid.tier);
    for (size_t i = 0; i < shares_.size(); ++i) {
        const Share& share = shares_[i];
        share.label->setVisible(i < shown);
        share.value->setVisible(i < shown);
        if (i >= shown) {
            continue;
        }
        share.label->setText(isCompact(grid.tier) ? share.compactName : share.name);
        const double right = grid.width - width * static_cast<double>(shown - i - 1);
        const double room = i == 0 ? width - firstShareSlack(grid.tier) : width;
        place(*share.label, QRectF(right - room, SectionGrid::heroTop + shareLabelTop, room, shareLabelLine));
        place(*share.value, QRectF(right - room, SectionGrid::heroTop + shareValueTop, room, shareValueLine));
    }
}

}  // namespace kestro
