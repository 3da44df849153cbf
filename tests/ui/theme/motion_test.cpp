#include "ui/theme/motion.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(Motion, IsInstantWhenTheDesktopReducesIt) {
    motion::setReduced(true);
    const int reduced = motion::duration(motion::popoverOpen);
    motion::setReduced(false);

    EXPECT_EQ(reduced, 0);
    EXPECT_EQ(motion::duration(motion::popoverOpen), motion::isReduced() ? 0 : 130);
}

}  // namespace
}  // namespace kestro
