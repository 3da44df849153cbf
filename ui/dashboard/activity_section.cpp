#include "ui/dashboard/activity_section.h"

#include "core/engine/telemetry_engine.h"
#include "core/settings/user_settings.h"
#include "ui/controls/button.h"
#include "ui/controls/words.h"
#include "ui/format/record_text.h"
#include "ui/format/without_remark.h"
#include "ui/paint/hairline.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double headLine = 11;
constexpr int headHit = 22;
constexpr double headPadding = 4;

/// Keeps the ring between the rule of the title and the first process.
constexpr double headRingInset = 5.5;
constexpr double footLine = 13;
constexpr int mostProcesses = 64;

const TextStyle headStyle{9, headLine, QFont::Medium, 0, KestroTheme::textSecondary};
const TextStyle footStyle{9, footLine, QFont::Medium, 0, KestroTheme::textSecondary};

/// Gives the keyboard to another control before the one that has it hides.
void handOverFocus(const Button& from, Button& to) {
    if (from.hasFocus()) {
        to.show();
        to.setFocus(from.showsFocus() ? Qt::TabFocusReason : Qt::OtherFocusReason);
    }
}

}  // namespace

ActivitySection::ActivitySection(const KestroServices& services, QWidget* parent)
    : DashboardSection(QStringLiteral("waveform.path.ecg"), QStringLiteral("Activity"), {}, parent),
      services_(services),
      nameHead_(new TextLabel(QStringLiteral("Process"), this)),
      cpuHead_(makeHead(QStringLiteral("CPU"), QStringLiteral("Sort by CPU Load"))),
      memoryHead_(makeHead(QStringLiteral("Memory"), QStringLiteral("Sort by Memory Footprint"))),
      nothing_(new TextLabel(QStringLiteral("No processes listed"), this)) {
    nothing_->setStyle(text_styles::rowLabel);
    nothing_->setTextAlignment(Qt::AlignHCenter);
    nameHead_->setStyle(headStyle);
    for (TextLabel*& line : foot_) {
        line = new TextLabel(QString(), this);
        line->setStyle(footStyle);
    }
    TextStyle model = footStyle;
    model.weight = QFont::DemiBold;
    model.ink = KestroTheme::textPrimary;
    foot_[0]->setStyle(model);
    cpuHead_->onClick([this] { sortBy(sortsByMemory() ? false : grid().tier == SectionTier::tight); });
    memoryHead_->onClick([this] { sortBy(!(sortsByMemory() && grid().tier == SectionTier::tight)); });
    follow(services_.engine.topProcesses, [this] { showProcesses(); });
    follow(services_.engine.cpu, [this] { showFoot(); });
    follow(services_.settings.processSortMetric, [this] { showProcesses(); });
    follow(services_.settings.processCountLimit, [this] { showProcesses(); });
}

Button* ActivitySection::makeHead(const QString& text, const QString& help) {
    auto* head = new Button(ButtonKind::plain, this);
    head->setText(text);
    head->setHelp(help);
    head->setAccessibleName(help);
    head->setPadding(headPadding);
    head->setTextStyle(headStyle);
    head->setFocusInset({0, headRingInset, 0, headRingInset});
    return head;
}

void ActivitySection::refresh() {
    showProcesses();
    showFoot();
}

void ActivitySection::showProcesses() {
    setMeta(QStringLiteral("Top %1").arg(limit()));
    if (limit() != shownLimit_ || sortsByMemory() != shownByMemory_) {
        shownLimit_ = limit();
        shownByMemory_ = sortsByMemory();
        arrangeAgain();
    }
    const std::vector<ProcessInfoItem>& processes = services_.engine.topProcesses.get();
    nothing_->setVisible(processes.empty());
    const std::uint64_t totalBytes = services_.engine.memory.get().totalBytes;
    const auto shown = static_cast<size_t>(listLayout(grid()).rows);
    for (size_t i = 0; i < rows_.size(); ++i) {
        const bool isShown = i < shown && i < processes.size();
        if (isShown) {
            rows_[i]->setContent(processRowContent(processes[i], sortsByMemory(), totalBytes));
        }
        rows_[i]->setVisible(isShown);
    }
}

void ActivitySection::showFoot() {
    const TelemetryEngine& engine = services_.engine;
    const QString model = Words(engine.macModel());
    foot_[0]->setText(isCompact(grid().tier) ? withoutRemark(model) : model);
    foot_[1]->setText(Words(engine.macOSVersion()));
    foot_[2]->setText(Words(presentClusters(engine.cpu.get())));
}

void ActivitySection::sortBy(bool byMemory) {
    if (byMemory != sortsByMemory()) {
        services_.settings.processSortMetric.set(byMemory ? ProcessSortMetric::memory : ProcessSortMetric::cpu);
        services_.engine.refreshProcesses();
    }
}

void ActivitySection::arrange(const SectionGrid& grid) {
    const ProcessListLayout layout = listLayout(grid);
    arrangeHeads(grid, layout);
    while (rows_.size() < static_cast<size_t>(layout.rows)) {
        rows_.push_back(new ProcessRow(this));
        rows_.back()->hide();
    }
    const size_t processes = services_.engine.topProcesses.get().size();
    const double listEnd = layout.hasFoot ? layout.footRule : grid.height;
    const double middle = (layout.firstRow + listEnd) / 2;
    place(*nothing_,
          QRectF(0, middle - nothing_->style().lineHeight / 2, grid.width, nothing_->style().lineHeight));
    nothing_->setVisible(processes == 0);
    for (size_t i = 0; i < rows_.size(); ++i) {
        const double top = layout.firstRow + layout.rowHeight * static_cast<double>(i);
        rows_[i]->setColumns(layout.cpuWidth, layout.memoryWidth);
        rows_[i]->setSpacing(grid.spacing == RowSpacing::dense ? RowSpacing::regular : grid.spacing);
        rows_[i]->setVisible(i < static_cast<size_t>(layout.rows) && i < processes);
        place(*rows_[i], QRectF(0, top, grid.width, layout.rowHeight));
    }
    for (size_t i = 0; i < foot_.size(); ++i) {
        foot_[i]->setVisible(layout.hasFoot);
        place(*foot_[i], QRectF(0, layout.footTop + footLine * static_cast<double>(i), grid.width, footLine));
    }
    if (isVisible()) {
        showProcesses();
        showFoot();
    }
}

void ActivitySection::arrangeHeads(const SectionGrid& grid, const ProcessListLayout& layout) {
    // A narrow card has room for one head; a press on it shows the other in its place.
    if (layout.memoryWidth <= 0) {
        handOverFocus(*memoryHead_, *cpuHead_);
    } else if (layout.cpuWidth <= 0) {
        handOverFocus(*cpuHead_, *memoryHead_);
    }
    double right = grid.width;
    const double middle = layout.headTop + headLine / 2;
    const auto placeHead = [&](Button& head, double width, bool isSorting) {
        TextStyle style = headStyle;
        style.weight = isSorting ? QFont::DemiBold : QFont::Medium;
        style.ink = isSorting ? KestroTheme::textPrimary : KestroTheme::textSecondary;
        head.setTextStyle(style);
        head.setAccessibleDescription(isSorting ? QStringLiteral("The list is sorted by this") : QString());
        head.setVisible(width > 0);
        const double hit = std::ceil(textWidth(head.text(), style)) + 2 * headPadding;
        // The text is aligned with its column, so the click area's padding extends beyond it.
        place(head, QRectF(right + headPadding - hit, middle - headHit / 2.0, hit, headHit));
        right -= width;
    };
    placeHead(*memoryHead_, layout.memoryWidth, sortsByMemory());
    placeHead(*cpuHead_, layout.cpuWidth, !sortsByMemory());
    place(*nameHead_, QRectF(0, layout.headTop, std::max(0.0, right), headLine));
}

void ActivitySection::paintRules(QPainter& painter, const SectionGrid& grid) const {
    const ProcessListLayout layout = listLayout(grid);
    if (layout.hasFoot) {
        paintHairline(painter, 0, grid.width, layout.footRule);
    }
}

bool ActivitySection::sortsByMemory() const {
    return services_.settings.processSortMetric.get() == ProcessSortMetric::memory;
}

int ActivitySection::limit() const {
    const std::int64_t wanted = services_.settings.processCountLimit.get();
    return static_cast<int>(std::clamp<std::int64_t>(wanted, 1, mostProcesses));
}

ProcessListLayout ActivitySection::listLayout(const SectionGrid& grid) const {
    return processListLayout(grid, limit(), sortsByMemory());
}

}  // namespace kestro
