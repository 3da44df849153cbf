#pragma once

#include "ui/dashboard/dashboard_section.h"
#include "ui/dashboard/process_row.h"

#include <array>
#include <vector>

namespace kestro {

class Button;

/// The processes that use the most CPU or memory, and the machine's name. Clicking a column head sorts by that
/// column and lists the processes again at once.
class ActivitySection : public DashboardSection {
    Q_OBJECT

public:
    explicit ActivitySection(const KestroServices& services, QWidget* parent = nullptr);

protected:
    void refresh() override;
    void arrange(const SectionGrid& grid) override;
    void paintRules(QPainter& painter, const SectionGrid& grid) const override;

private:
    Button* makeHead(const QString& text, const QString& help);
    void showProcesses();
    void showFoot();
    void sortBy(bool byMemory);
    void arrangeHeads(const SectionGrid& grid, const ProcessListLayout& layout);
    bool sortsByMemory() const;
    int limit() const;
    ProcessListLayout listLayout(const SectionGrid& grid) const;

    KestroServices services_;
    TextLabel* nameHead_;
    Button* cpuHead_;
    Button* memoryHead_;
    std::vector<ProcessRow*> rows_;
    std::array<TextLabel*, 3> foot_;
    TextLabel* nothing_;
    int shownLimit_ = 0;
    bool shownByMemory_ = false;
};

}  // namespace kestro
