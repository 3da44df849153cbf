#include "shell/linux/notifier/action_queue.h"

#include "tests/support/event_waiting.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace kestro {
namespace {

using testing::ElementsAre;

struct ActionQueueTest : testing::Test {
    std::unique_ptr<ActionQueue> queue = std::make_unique<ActionQueue>();
    std::vector<int> done;

    void add(int key) {
        queue->add(key, [this, key] { done.push_back(key); });
    }
};

TEST_F(ActionQueueTest, RunsAnActionFromTheEventLoopOnceHoweverOftenItWasRequested) {
    for (int count = 0; count < 20'000; ++count) {
        add(7);
        add(3);
    }
    EXPECT_TRUE(done.empty());

    ASSERT_TRUE(waitUntil([&] { return done.size() == 2; }));
    add(7);
    ASSERT_TRUE(waitUntil([&] { return done.size() == 3; }));

    EXPECT_THAT(done, ElementsAre(7, 3, 7));
}

TEST_F(ActionQueueTest, RunsAnActionAsRequestedLast) {
    add(3);
    for (int argument = 10; argument < 13; ++argument) {
        queue->add(7, [this, argument] { done.push_back(argument); });
    }
    add(4);

    ASSERT_TRUE(waitUntil([&] { return done.size() == 3; }));

    EXPECT_THAT(done, ElementsAre(3, 12, 4));
}

TEST_F(ActionQueueTest, LetsOtherEventsInBetweenTwoActions) {
    add(1);
    add(2);
    add(3);
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [this] { done.push_back(0); });

    other.start(0);
    ASSERT_TRUE(waitUntil([&] { return !done.empty() && done.back() == 3; }));
    other.stop();

    done.erase(std::unique(done.begin(), done.end()), done.end());
    EXPECT_THAT(done, ElementsAre(1, 0, 2, 0, 3));
}

TEST_F(ActionQueueTest, AnActionMayDestroyIt) {
    queue->add(1, [this] {
        queue.reset();
        done.push_back(1);
    });
    add(2);

    ASSERT_TRUE(waitUntil([&] { return !done.empty(); }));
    QCoreApplication::processEvents();

    EXPECT_THAT(done, ElementsAre(1));
}

}  // namespace
}  // namespace kestro
