#include "platform/desktop/wayland_wire.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace kestro {
namespace {

std::vector<std::uint32_t> words(const std::string& bytes) {
    std::vector<std::uint32_t> found(bytes.size() / sizeof(std::uint32_t));
    std::memcpy(found.data(), bytes.data(), bytes.size());
    return found;
}

TEST(WaylandRequest, HasItsSizeAndNumberInTheSecondWord) {
    const auto bytes = WaylandRequest(3, 6).number(41).number(static_cast<std::uint32_t>(-1)).bytes();

    EXPECT_EQ(words(bytes), (std::vector<std::uint32_t>{3, 16 << 16 | 6, 41, 0xffffffff}));
}

TEST(WaylandRequest, PadsATextAndItsNullCharacterToWholeWords) {
    for (const auto& [text, size] : {std::pair{"abc", 16U}, std::pair{"abcd", 20U}, std::pair{"", 16U}}) {
        const auto bytes = WaylandRequest(3, 0).text(text).bytes();

        EXPECT_EQ(bytes.size(), size) << text;
        EXPECT_EQ(words(bytes).at(2), std::strlen(text) + 1) << text;
        EXPECT_STREQ(bytes.c_str() + 12, text);
    }
}

TEST(WaylandEventStream, YieldsEventsThatArriveInPieces) {
    const auto bytes =
        WaylandRequest(2, 0).number(9).text("wl_seat").number(5).bytes() + WaylandRequest(3, 1).bytes();
    WaylandEventStream stream;
    std::vector<WaylandEvent> events;
    for (const char byte : bytes) {
        stream.append({&byte, 1});
        if (auto event = stream.next()) {
            events.push_back(*event);
        }
    }

    ASSERT_EQ(events.size(), 2U);
    WaylandArguments arguments(events[0].arguments);
    EXPECT_EQ(arguments.number(), 9U);
    EXPECT_EQ(arguments.text(), "wl_seat");
    EXPECT_EQ(arguments.number(), 5U);
    EXPECT_EQ(events[1].object, 3U);
    EXPECT_EQ(events[1].opcode, 1U);
}

TEST(WaylandEventStream, EndsAtASizeThatNoMessageHas) {
    for (const std::uint32_t size : {0U, 4U, 10U}) {
        std::string bytes = WaylandRequest(2, 0).bytes();
        const std::uint32_t second = size << 16;
        std::memcpy(bytes.data() + 4, &second, sizeof second);
        WaylandEventStream stream;
        stream.append(bytes + WaylandRequest(3, 1).bytes());

        EXPECT_FALSE(stream.next().has_value()) << size;
        EXPECT_TRUE(stream.isMalformed()) << size;
        EXPECT_FALSE(stream.next().has_value()) << size;
    }
}

TEST(WaylandArguments, ReadAsNothingWhereTheyAreMissing) {
    const std::uint32_t tooLong = 100;
    std::string bytes(reinterpret_cast<const char*>(&tooLong), sizeof tooLong);
    WaylandArguments arguments(bytes);

    EXPECT_EQ(arguments.text(), "");
    EXPECT_EQ(arguments.number(), 0U);
    EXPECT_EQ(WaylandArguments("abc").number(), 0U);
}

}  // namespace
}  // namespace kestro
