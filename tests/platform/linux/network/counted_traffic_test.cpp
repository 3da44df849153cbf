#include "platform/linux/network/counted_traffic.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

std::vector<InterfaceTraffic> counters(std::uint64_t first, std::uint64_t second) {
    return {{"first", {first, first / 10}}, {"second", {second, second / 10}}};
}

TEST(CountedTraffic, KeepsTheFullCountersOfTheInitialLinks) {
    CountedTraffic traffic;
    traffic.follow({"first", "second"}, counters(5000, 900));

    EXPECT_EQ(traffic.sinceCounted("first", {5000, 500}).receivedBytes, 5000U);
    EXPECT_EQ(traffic.sinceCounted("second", {901, 90}).receivedBytes, 901U);
}

TEST(CountedTraffic, StartsAJoiningLinkAtOne) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 900));

    traffic.follow({"first", "second"}, counters(5001, 900));

    EXPECT_EQ(traffic.sinceCounted("first", {5001, 500}).receivedBytes, 5001U);
    EXPECT_EQ(traffic.sinceCounted("second", {900, 90}).receivedBytes, 1U);
    EXPECT_EQ(traffic.sinceCounted("second", {970, 95}).receivedBytes, 71U);
    EXPECT_EQ(traffic.sinceCounted("second", {970, 95}).sentBytes, 6U);
}

TEST(CountedTraffic, StartsALinkWithoutTrafficAtZero) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 0));

    traffic.follow({"first", "second"}, counters(5000, 0));

    EXPECT_EQ(traffic.sinceCounted("second", {0, 0}).receivedBytes, 0U);
    EXPECT_EQ(traffic.sinceCounted("second", {7, 0}).receivedBytes, 7U);
}

TEST(CountedTraffic, RestartsALinkThatLeftAndRejoined) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 900));
    traffic.follow({"second"}, counters(5000, 900));

    traffic.follow({"first"}, counters(6000, 950));

    EXPECT_EQ(traffic.sinceCounted("first", {6010, 600}).receivedBytes, 11U);
}

TEST(CountedTraffic, KeepsTheFullCountersOfALinkThatJoinsNoOther) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 900));
    traffic.follow({}, counters(5000, 900));

    traffic.follow({"second"}, counters(5000, 900));

    EXPECT_EQ(traffic.sinceCounted("second", {900, 90}).receivedBytes, 900U);
}

TEST(CountedTraffic, StartsFromTheFirstReadableCounters) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 900));
    traffic.follow({"first", "second"}, {});

    EXPECT_EQ(traffic.sinceCounted("second", {900, 90}).receivedBytes, 1U);
    EXPECT_EQ(traffic.sinceCounted("second", {910, 91}).receivedBytes, 11U);
}

TEST(CountedTraffic, CountsAllTrafficOfALinkRecreatedUnderTheSameName) {
    CountedTraffic traffic;
    traffic.follow({"first"}, counters(5000, 900));
    traffic.follow({"first", "second"}, counters(5000, 900));

    EXPECT_EQ(traffic.sinceCounted("second", {40, 90}).receivedBytes, 40U);
    EXPECT_EQ(traffic.sinceCounted("second", {55, 91}).receivedBytes, 55U);
    EXPECT_EQ(traffic.sinceCounted("second", {55, 91}).sentBytes, 2U);
}

TEST(CountedTraffic, LeavesTheCountersOfUncountedLinksUnchanged) {
    CountedTraffic traffic;

    EXPECT_EQ(traffic.sinceCounted("lo", {7, 8}).receivedBytes, 7U);
}

}  // namespace
}  // namespace kestro
