#include "ui/format/without_remark.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(WithoutRemark, DropsATrailingPartInParentheses) {
    EXPECT_EQ(withoutRemark(QStringLiteral("Apple M2 Pro (Mac14,9)")), QStringLiteral("Apple M2 Pro"));
    EXPECT_EQ(withoutRemark(QStringLiteral("ThinkPad")), QStringLiteral("ThinkPad"));
    EXPECT_EQ(withoutRemark(QStringLiteral("(odd)")), QStringLiteral("(odd)"));
}

}  // namespace
}  // namespace kestro
