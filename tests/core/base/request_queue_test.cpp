#include "core/base/request_queue.h"

#include <gtest/gtest.h>

#include <optional>

namespace kestro {
namespace {

TEST(RequestQueue, ReturnsRequestsInOrder) {
    RequestQueue<int> queue;
    EXPECT_TRUE(queue.add(2));
    EXPECT_TRUE(queue.add(1));

    EXPECT_EQ(queue.take(), 2);
    EXPECT_EQ(queue.take(), 1);
    EXPECT_EQ(queue.take(), std::nullopt);
    EXPECT_TRUE(queue.isEmpty());
}

TEST(RequestQueue, AddsNoRequestThatEqualsAWaitingOne) {
    RequestQueue<int> queue;
    queue.add(1);
    queue.add(2);

    EXPECT_FALSE(queue.add(1));

    EXPECT_EQ(queue.take(), 1);
    EXPECT_TRUE(queue.add(1)) << "the first one no longer waits";
    EXPECT_EQ(queue.take(), 2);
    EXPECT_EQ(queue.take(), 1);
}

TEST(RequestQueue, ReplacesAnEqualRequestInItsPlace) {
    struct Call {
        int method = 0;
        int argument = 0;
        bool operator==(const Call& other) const { return method == other.method; }
    };
    RequestQueue<Call> queue;
    queue.add({1, 10});
    queue.add({2, 20});

    queue.add({1, 11});

    EXPECT_EQ(queue.take()->argument, 11);
    EXPECT_EQ(queue.take()->argument, 20);
    EXPECT_TRUE(queue.isEmpty());
}

TEST(RequestQueue, HoldsAtMostItsLimit) {
    RequestQueue<std::size_t> queue;
    for (std::size_t request = 0; request < RequestQueue<std::size_t>::limit; ++request) {
        EXPECT_TRUE(queue.add(request));
    }

    EXPECT_FALSE(queue.add(1000));

    EXPECT_EQ(queue.take(), 0U);
    EXPECT_TRUE(queue.add(1000));
}

}  // namespace
}  // namespace kestro
