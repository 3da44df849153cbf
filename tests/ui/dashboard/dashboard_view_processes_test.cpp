#include "tests/ui/dashboard/dashboard_fixture.h"
#include "ui/controls/text_label.h"
#include "ui/dashboard/process_row.h"

#include <QAccessible>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kestro {
namespace {

TEST_F(DashboardViewTest, SaysThatNoProcessIsListed) {
    make([](SimulatedMac& mac) { mac.commandRunner.processes.clear(); });
    show(1260, 480);
    const auto isSaid = [this] {
        const auto labels = section<ActivitySection>().findChildren<TextLabel*>();
        return std::ranges::any_of(labels, [](const TextLabel* one) {
            return one->isVisible() && one->text() == QStringLiteral("No processes listed");
        });
    };
    EXPECT_TRUE(isSaid());

    machine_->mac.commandRunner.processes.push_back({1, 12, 1024 * 1024, "/usr/bin/sh"});
    machine_->settle();

    EXPECT_FALSE(isSaid());
}

TEST_F(DashboardViewTest, ListsTheProcessesAgainWhenAColumnHeadIsClicked) {
    make();
    show(1260, 480);
    const auto heads = section<ActivitySection>().findChildren<Button*>();
    ASSERT_EQ(heads.size(), 2);
    const auto listings = machine_->mac.commandRunner.calls().size();

    heads[1]->click();
    machine_->mac.runPending();
    EXPECT_EQ(machine_->settings().processSortMetric.get(), ProcessSortMetric::memory);
    EXPECT_EQ(machine_->mac.commandRunner.calls().size(), listings + 1);
    heads[1]->click();
    machine_->mac.runPending();

    EXPECT_EQ(machine_->mac.commandRunner.calls().size(), listings + 1) << "already sorted by this column";
}

TEST_F(DashboardViewTest, TogglesTheMetricWithTheSingleHeadOfATightList) {
    make();
    show(740, 420);
    const auto heads = section<ActivitySection>().findChildren<Button*>();
    EXPECT_TRUE(heads[0]->isVisible());
    EXPECT_FALSE(heads[1]->isVisible());

    heads[0]->click();
    EXPECT_TRUE(heads[1]->isVisible());
    EXPECT_FALSE(heads[0]->isVisible());
    heads[1]->click();

    EXPECT_EQ(machine_->settings().processSortMetric.get(), ProcessSortMetric::cpu);
}

TEST_F(DashboardViewTest, HandsTheKeyboardToTheHeadThatReplacesTheOther) {
    make();
    show(740, 420);
    view_->activateWindow();
    const auto heads = section<ActivitySection>().findChildren<Button*>();
    heads[0]->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(heads[0]->hasFocus());

    QTest::keyClick(heads[0], Qt::Key_Space);
    EXPECT_TRUE(heads[1]->hasFocus());
    EXPECT_TRUE(heads[1]->showsFocus());
    QTest::keyClick(heads[1], Qt::Key_Space);

    EXPECT_TRUE(heads[0]->hasFocus());
}

TEST_F(DashboardViewTest, ShowsTheFullCommandOfAProcessAsPlainText) {
    make([](SimulatedMac& mac) {
        mac.commandRunner.processes = {{7, 99, 1024, "/opt/<b>evil</b> --flag & more"}};
    });
    show(1260, 480);

    const ProcessRow* row = section<ActivitySection>().findChild<ProcessRow*>();

    ASSERT_TRUE(row);
    EXPECT_EQ(row->help(), QStringLiteral("/opt/<b>evil</b> --flag & more"));
}

TEST_F(DashboardViewTest, ShowsNoRowsWithoutProcesses) {
    make([](SimulatedMac& mac) { mac.commandRunner.processes.clear(); });
    show(1260, 480);

    for (const ProcessRow* row : section<ActivitySection>().findChildren<ProcessRow*>()) {
        EXPECT_FALSE(row->isVisible());
    }
}

TEST_F(DashboardViewTest, ShowsTheRequestedNumberOfProcesses) {
    make();
    machine_->settings().processCountLimit.set(10);
    machine_->settle();
    show(1260, 480);

    int visible = 0;
    for (const ProcessRow* row : section<ActivitySection>().findChildren<ProcessRow*>()) {
        visible += row->isVisible();
    }

    EXPECT_EQ(visible, 10);
}

TEST_F(DashboardViewTest, ClampsTheProcessCountInItsRemark) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {-5, "Top 1"}, {0, "Top 1"}, {6, "Top 6"}, {1'000'000'000'000, "Top 64"}};
    for (const auto& [count, meta] : cases) {
        make();
        machine_->settings().processCountLimit.set(count);
        show(1260, 480);

        QStringList texts;
        for (const TextLabel* label : section<ActivitySection>().findChildren<TextLabel*>()) {
            texts.append(label->text());
        }
        EXPECT_EQ(texts.filter(QStringLiteral("Top ")), QStringList{QString::fromUtf8(meta)}) << count;
    }
}

TEST_F(DashboardViewTest, DrawsTheRingOfAColumnHeadAboveTheFirstProcess) {
    make();
    show(1260, 480);
    ActivitySection& activity = section<ActivitySection>();
    int firstProcess = activity.height();
    for (const ProcessRow* row : activity.findChildren<ProcessRow*>()) {
        firstProcess = std::min(firstProcess, row->y());
    }
    const double titleRule = 12 + SectionGrid::titleRule;

    for (const Button* head : activity.findChildren<Button*>()) {
        constexpr double ring = FocusRing::ringGap + FocusRing::ringWidth;
        const QRectF area = head->focusArea().translated(head->pos());
        EXPECT_GT(area.top() - ring, titleRule) << head->text().toStdString();
        EXPECT_LE(area.bottom() + ring, firstProcess) << head->text().toStdString();
    }
}

TEST_F(DashboardViewTest, ExposesTheSortColumn) {
    make();
    show(1260, 480);
    const auto sorting = [this] {
        QStringList found;
        for (Button* head : section<ActivitySection>().findChildren<Button*>()) {
            const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(head);
            if (spoken->text(QAccessible::Description) == QStringLiteral("The list is sorted by this")) {
                found.append(head->text());
            }
        }
        return found;
    };

    EXPECT_EQ(sorting(), QStringList{QStringLiteral("CPU")});
    machine_->settings().processSortMetric.set(ProcessSortMetric::memory);
    EXPECT_EQ(sorting(), QStringList{QStringLiteral("Memory")});
}

}  // namespace
}  // namespace kestro
