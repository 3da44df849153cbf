#pragma once

#include "core/platform/command_runner.h"

#include <gtest/gtest.h>

#include <optional>

namespace kestro {

/// What every CommandRunner promises. A Subject has `run(executable, arguments)`, on a background thread where the
/// port demands one; and `runKnown()`, which runs a program that succeeds and prints lines.
template <typename Subject>
class CommandRunnerContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(CommandRunnerContract);

TYPED_TEST_P(CommandRunnerContract, ReturnsWhatAProgramPrints) {
    const std::optional<CommandOutput> output = this->subject.runKnown();

    ASSERT_TRUE(output);
    EXPECT_EQ(output->exitStatus, 0);
    EXPECT_TRUE(output->standardOutput.ends_with('\n')) << output->standardOutput;
}

TYPED_TEST_P(CommandRunnerContract, ReturnsTheSameAgain) {
    const std::optional<CommandOutput> first = this->subject.runKnown();
    const std::optional<CommandOutput> second = this->subject.runKnown();

    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->standardOutput, second->standardOutput);
}

TYPED_TEST_P(CommandRunnerContract, HasNoOutputOfAProgramThatCannotBeLaunched) {
    EXPECT_FALSE(this->subject.run("/usr/bin/no-such-program", {}));
    EXPECT_FALSE(this->subject.run("", {}));
}

REGISTER_TYPED_TEST_SUITE_P(CommandRunnerContract, ReturnsWhatAProgramPrints, ReturnsTheSameAgain,
                            HasNoOutputOfAProgramThatCannotBeLaunched);

}  // namespace kestro
