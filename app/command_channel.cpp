#include "app/command_channel.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <utility>

namespace kestro {

namespace {

struct Command {
    std::string_view word;
    void (*perform)(CommandTarget& target);
};

template <SettingsTab tab>
void showSettingsAt(CommandTarget& target) {
    target.selectSettingsTab(tab);
    target.showSettings();
}

constexpr std::array commands{
    Command{"popover", [](CommandTarget& target) { target.togglePopover(); }},
    Command{"dashboard", [](CommandTarget& target) { target.showDashboard(); }},
    Command{"settings", [](CommandTarget& target) { target.showSettings(); }},
    Command{"settings-sensors", showSettingsAt<SettingsTab::sensors>},
    Command{"settings-dashboard", showSettingsAt<SettingsTab::dashboard>},
    Command{"settings-menubar", showSettingsAt<SettingsTab::menubar>},
    Command{"settings-keepawake", showSettingsAt<SettingsTab::keepAwake>},
    Command{"settings-cooling", showSettingsAt<SettingsTab::cooling>},
    Command{"settings-power", showSettingsAt<SettingsTab::power>},
    Command{"toggle-fan-link", [](CommandTarget& target) { target.toggleFanLink(); }},
    Command{"select-fan-0", [](CommandTarget& target) { target.selectFan(0); }},
    Command{"select-fan-1", [](CommandTarget& target) { target.selectFan(1); }},
    Command{"preset-quiet", [](CommandTarget& target) { target.selectCurvePreset(CurvePreset::quietStudio); }},
    Command{"dashboard-fullscreen", [](CommandTarget& target) { target.toggleFullScreenAction(); }},
    Command{"dashboard-resize",
            [](CommandTarget& target) {
                target.showDashboard({1500, 750});
            }},
    Command{"dashboard-shrink",
            [](CommandTarget& target) {
                target.showDashboard({800, 460});
            }},
    Command{"hide", [](CommandTarget& target) { target.hideDashboard(); }},
};
static_assert(commands.size() == 17);

}  // namespace

bool performCommand(std::string_view word, CommandTarget& target) {
    const auto* const found = std::ranges::find(commands, word, &Command::word);
    if (found == commands.end()) {
        return false;
    }
    found->perform(target);
    return true;
}

std::string commandWord(std::string_view bytes) {
    using Flag = QStringDecoder::Flag;
    QStringDecoder decoder(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return decoder.hasError() ? std::string() : text.trimmed().toStdString();
}

CommandChannel::CommandChannel(FileEvents& fileEvents, CommandTarget& target, std::string path)
    : fileEvents_(fileEvents), target_(target), path_(std::move(path)) {
    fileEvents_.createIfMissing(path_);
    cmdSource_ = fileEvents_.watchWrites(path_, [this, alive = lifetime_.watch()] {
        if (!alive.expired()) {
            fileWasWritten();
        }
    });
}

void CommandChannel::fileWasWritten() {
    const auto bytes = fileEvents_.read(path_);
    if (!bytes) {
        return;
    }
    // A full read may be truncated, so the word in it is unknown.
    const bool isTooLong = bytes->size() >= FileEvents::longestRead;
    const std::string word = commandWord(*bytes);
    if (word.empty() && !isTooLong) {
        return;
    }
    // Emptied before the command runs, so that the word is consumed once whatever happens next. Truncating is
    // itself a write, whose event finds a blank file.
    fileEvents_.truncate(path_);
    if (!isTooLong) {
        performCommand(word, target_);
    }
}

}  // namespace kestro
