#pragma once

#include "core/platform/power_mode_script.h"
#include "core/platform/script_runner.h"

#include <gtest/gtest.h>

namespace kestro {

/// What every ScriptRunner promises. A Subject has `execute(source)`, on a background thread where the port
/// demands one, with a user who consents; and `mode()`, the machine's power mode, which is 0 at first.
template <typename Subject>
class ScriptRunnerContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(ScriptRunnerContract);

TYPED_TEST_P(ScriptRunnerContract, ReturnsWhenTheScriptHasEnded) {
    this->subject.execute(powerModeScript("1"));
    EXPECT_EQ(this->subject.mode(), 1);
    this->subject.execute(powerModeScript("0"));

    EXPECT_EQ(this->subject.mode(), 0);
}

TYPED_TEST_P(ScriptRunnerContract, NoOtherScriptSwitchesTheMode) {
    this->subject.execute(powerModeScript("1"));

    this->subject.execute("beep");
    this->subject.execute("");

    EXPECT_EQ(this->subject.mode(), 1);
}

REGISTER_TYPED_TEST_SUITE_P(ScriptRunnerContract, ReturnsWhenTheScriptHasEnded, NoOtherScriptSwitchesTheMode);

}  // namespace kestro
