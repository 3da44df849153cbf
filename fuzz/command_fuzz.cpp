#include "app/command_channel.h"
#include "core/base/text.h"
#include "fuzz/requirement.h"

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

/// Counts the commands that it receives.
class CountingTarget : public CommandTarget {
public:
    void togglePopover() override { ++commands; }
    void showDashboard() override { ++commands; }
    void showSettings() override { ++commands; }
    void selectSettingsTab(SettingsTab) override {}  // always accompanies showSettings()
    void toggleFanLink() override { ++commands; }
    void selectFan(std::int64_t) override { ++commands; }
    void selectCurvePreset(CurvePreset) override { ++commands; }
    void toggleFullScreenAction() override { ++commands; }
    void showDashboard(QSize) override { ++commands; }
    void hideDashboard() override { ++commands; }

    int commands = 0;
};

}  // namespace
}  // namespace kestro

// Any contents of the command file yield at most one word, and a word triggers at most one command.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto word = kestro::commandWord(bytes);
    kestro::require(kestro::isValidUtf8(word) && word.size() <= bytes.size());
    kestro::require(kestro::commandWord(word) == word);
    kestro::require(word.empty() || (std::isspace(static_cast<unsigned char>(word.front())) == 0 &&
                                     std::isspace(static_cast<unsigned char>(word.back())) == 0));
    kestro::CountingTarget target;
    const bool isCommand = kestro::performCommand(word, target);
    kestro::require(target.commands == (isCommand ? 1 : 0));
    return 0;
}
