#include "platform/macos/owned.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace kestro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> released;

struct Recorder {
    void operator()(int handle) const { released.push_back(handle); }
};
using Recorded = Owned<int, Recorder>;

class OwnedTest : public testing::Test {
protected:
    OwnedTest() { released.clear(); }
};

TEST_F(OwnedTest, ReleasesItsObjectAtTheEnd) {
    {
        const Recorded owner(7);
        EXPECT_TRUE(owner);
        EXPECT_EQ(owner.get(), 7);
    }
    EXPECT_THAT(released, ElementsAre(7));
}

TEST_F(OwnedTest, ReleasesNothingWhileEmpty) {
    {
        Recorded owner;
        EXPECT_FALSE(owner);
        owner.reset();
        const Recorded other(std::move(owner));
    }
    EXPECT_THAT(released, IsEmpty());
}

TEST_F(OwnedTest, MovingTransfersTheObject) {
    Recorded first(1);
    Recorded second(2);

    Recorded third(std::move(first));
    EXPECT_THAT(released, IsEmpty());
    second = std::move(third);

    EXPECT_THAT(released, ElementsAre(2));
    EXPECT_EQ(second.get(), 1);
    second.reset();
    EXPECT_THAT(released, ElementsAre(2, 1));
}

TEST_F(OwnedTest, SurvivesAssignmentToItself) {
    Recorded owner(1);
    Recorded& same = owner;

    owner = std::move(same);

    EXPECT_EQ(owner.get(), 1);
    EXPECT_THAT(released, IsEmpty());
}

TEST_F(OwnedTest, ReplacingReleasesTheOldObject) {
    Recorded owner(1);

    owner.reset(2);
    EXPECT_THAT(released, ElementsAre(1));
    *owner.out() = 3;

    EXPECT_THAT(released, ElementsAre(1, 2));
    EXPECT_EQ(owner.get(), 3);
}

TEST_F(OwnedTest, TakingGivesTheObjectUp) {
    {
        Recorded owner(1);
        EXPECT_EQ(owner.take(), 1);
        EXPECT_FALSE(owner);
    }
    EXPECT_THAT(released, IsEmpty());
}

}  // namespace
}  // namespace kestro
