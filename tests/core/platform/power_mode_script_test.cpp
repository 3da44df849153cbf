#include "core/platform/power_mode_script.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kestro {
namespace {

TEST(PowerModeScript, RunsThePowerManagementToolAsAdministrator) {
    EXPECT_EQ(powerModeScript("2"), R"(do shell script "pmset -a powermode 2" with administrator privileges)");
}

TEST(PowerModeScript, OnlyTheThreeScriptsHaveAMode) {
    const std::string before = "do shell script \"pmset -a powermode ";
    const std::string after = "\" with administrator privileges";

    EXPECT_EQ(powerModeOfScript(before + "0" + after), 0);
    EXPECT_EQ(powerModeOfScript(before + "1" + after), 1);
    EXPECT_EQ(powerModeOfScript(before + "2" + after), 2);
    for (const auto& script :
         {std::string(), before, after, before + after, before + "3" + after, before + "-1" + after,
          before + " 1" + after, before + "1 " + after, before + "1; id" + after, before + "1" + after + "\n",
          " " + before + "1" + after, before + "11" + after, before + "a" + after,
          std::string("do shell script \"id\" with administrator privileges"),
          std::string("pmset -a powermode 1")}) {
        EXPECT_EQ(powerModeOfScript(script), std::nullopt) << script;
    }
}

}  // namespace
}  // namespace kestro
