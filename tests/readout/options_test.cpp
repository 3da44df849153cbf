#include "readout/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using Action = Options::Action;

struct Parsed {
    std::optional<Options> options;
    std::string error;
};

Parsed parse(const std::vector<const char*>& arguments) {
    Parsed parsed;
    parsed.options = parseOptions(arguments, parsed.error);
    return parsed;
}

TEST(ReadoutOptions, FollowTheTextByDefault) {
    const auto options = parse({}).options;

    ASSERT_TRUE(options);
    EXPECT_EQ(options->action, Action::follow);
    EXPECT_EQ(options->form, LineForm::plain);
}

TEST(ReadoutOptions, SelectAForm) {
    EXPECT_EQ(parse({"--json"}).options->form, LineForm::json);
    EXPECT_EQ(parse({"--waybar"}).options->form, LineForm::waybar);
    EXPECT_EQ(parse({"--i3bar"}).options->form, LineForm::i3bar);
    EXPECT_EQ(parse({"--genmon", "--once"}).options->form, LineForm::genmon);
    EXPECT_EQ(parse({"--genmon", "--once"}).options->action, Action::printOnce);
}

TEST(ReadoutOptions, SelectARequest) {
    const auto request = [](const std::vector<const char*>& arguments) {
        const auto options = parse(arguments).options;
        EXPECT_TRUE(options && options->action == Action::request);
        return options ? options->request : Request::togglePopover;
    };

    EXPECT_EQ(request({"--show", "popover"}), Request::togglePopover);
    EXPECT_EQ(request({"--show", "dashboard"}), Request::showDashboard);
    EXPECT_EQ(request({"--show", "settings"}), Request::showSettings);
    EXPECT_EQ(request({"--toggle-keep-awake"}), Request::toggleKeepAwake);
}

TEST(ReadoutOptions, PlaceThePopover) {
    EXPECT_EQ(parse({"--show", "popover", "--at", "120,-7"}).options->place, (Point{120, -7}));
    EXPECT_EQ(parse({"--at", "0,0", "--show", "popover"}).options->place, Point());
}

TEST(ReadoutOptions, FollowAsAHostAndSilently) {
    const auto options = parse({"--waybar", "--host", "--silent"}).options;

    ASSERT_TRUE(options);
    EXPECT_TRUE(options->isHost);
    EXPECT_TRUE(options->isSilent);
    EXPECT_EQ(options->lastLine, std::nullopt);
}

TEST(ReadoutOptions, FollowUntilTheLineChanges) {
    EXPECT_EQ(parse({"--after", "--once"}).options->lastLine, "--once");
    EXPECT_EQ(parse({"--after", ""}).options->lastLine, "");
}

TEST(ReadoutOptions, PrintHelpAndVersion) {
    EXPECT_EQ(parse({"--help"}).options->action, Action::help);
    EXPECT_EQ(parse({"--waybar", "--version"}).options->action, Action::version);
}

TEST(ReadoutOptions, RefuseWhatMakesNoSense) {
    const std::vector<std::vector<const char*>> wrong{{"--show"},
                                                      {"--show", "window"},
                                                      {"--show", "popover", "--once"},
                                                      {"--once", "--toggle-keep-awake"},
                                                      {"--show", "popover", "--show", "dashboard"},
                                                      {"--show", "dashboard", "--at", "1,2"},
                                                      {"--at", "1,2"},
                                                      {"--show", "popover", "--at"},
                                                      {"--show", "popover", "--at", "1"},
                                                      {"--show", "popover", "--at", "1,2,3"},
                                                      {"--show", "popover", "--at", "99999999999,2"},
                                                      {"--after"},
                                                      {"--once", "--host"},
                                                      {"--waybar", "--i3bar"},
                                                      {"--Waybar"},
                                                      {"popover"},
                                                      {""}};
    for (const auto& arguments : wrong) {
        const Parsed parsed = parse(arguments);
        EXPECT_FALSE(parsed.options) << arguments.front();
        EXPECT_FALSE(parsed.error.empty()) << arguments.front();
    }
}

}  // namespace
}  // namespace kestro
