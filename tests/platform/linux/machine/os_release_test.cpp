#include "platform/linux/machine/os_release.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

TEST(ParseVersionNumbers, ReadsUpToThreeNumbers) {
    EXPECT_EQ(parseVersionNumbers("22.04"), (VersionNumbers{22, 4, 0}));
    EXPECT_EQ(parseVersionNumbers(" 3.19.1.7\n"), (VersionNumbers{3, 19, 1}));
    EXPECT_EQ(parseVersionNumbers("6.9-rc1"), (VersionNumbers{6, 9, 0}));
    EXPECT_EQ(parseVersionNumbers("12."), (VersionNumbers{12, 0, 0}));
    EXPECT_EQ(parseVersionNumbers("12.x"), (VersionNumbers{12, 0, 0}));
}

TEST(ParseVersionNumbers, IsAbsentWithoutALeadingNumber) {
    EXPECT_FALSE(parseVersionNumbers(""));
    EXPECT_FALSE(parseVersionNumbers("rolling"));
    EXPECT_FALSE(parseVersionNumbers("-3"));
    EXPECT_FALSE(parseVersionNumbers("99999999999999999999"));
}

TEST(ParseOsRelease, RemovesQuotesAndEscapes) {
    EXPECT_EQ(parseOsRelease("NAME=\"Debian GNU/Linux\"\n").name, "Debian GNU/Linux");
    EXPECT_EQ(parseOsRelease("NAME='It is $5'\n").name, "It is $5");
    EXPECT_EQ(parseOsRelease("NAME=\"a \\\"b\\\" \\$c\"\n").name, "a \"b\" $c");
    EXPECT_EQ(parseOsRelease("NAME=Alpine\n").name, "Alpine");
    EXPECT_EQ(parseOsRelease("NAME=\"open end").name, "open end");
}

TEST(ParseOsRelease, MatchesExactKeysAndUsesTheLastAssignment) {
    const auto release =
        parseOsRelease("PRETTY_NAME=\"No\"\n# NAME=no\nNAME=First\nNAME=Last\nVERSION_ID=\"40\"\n");

    EXPECT_EQ(release.name, "Last");
    EXPECT_EQ(release.version, (VersionNumbers{40, 0, 0}));
}

TEST(ParseOsRelease, OmitsTextUnsuitableForDisplay) {
    const auto release = parseOsRelease("NAME=\"\xFF\xFE\"\nVERSION_ID=\n");

    EXPECT_FALSE(release.name);
    EXPECT_FALSE(release.version);
    EXPECT_FALSE(parseOsRelease("NAME=\"" + std::string(5000, 'x') + "\"\n").name);
    EXPECT_FALSE(parseOsRelease("").name);
    EXPECT_FALSE(parseOsRelease("NAME=\\").version);
}

}  // namespace
}  // namespace kestro
