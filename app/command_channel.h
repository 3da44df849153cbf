#pragma once

#include "core/base/lifetime.h"
#include "core/cooling/fan_curve.h"
#include "core/platform/file_events.h"
#include "core/settings/settings_enumerations.h"

#include <QSize>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kestro {

/// What a command word can make the application do. Main thread.
class CommandTarget {
public:
    virtual ~CommandTarget() = default;

    virtual void togglePopover() = 0;
    virtual void showDashboard() = 0;
    virtual void showSettings() = 0;
    virtual void selectSettingsTab(SettingsTab tab) = 0;
    virtual void toggleFanLink() = 0;
    virtual void selectFan(std::int64_t index) = 0;
    virtual void selectCurvePreset(CurvePreset preset) = 0;

    /// Shows the dashboard, then toggles the system's full screen.
    virtual void toggleFullScreenAction() = 0;

    /// Shows the dashboard, then gives it a size, its bottom-left corner staying where it is.
    virtual void showDashboard(QSize size) = 0;

    virtual void hideDashboard() = 0;
};

/// Performs the command that `word` names exactly, letter case included. False: it names none.
bool performCommand(std::string_view word, CommandTarget& target);

/// The command word in what a file holds: the text without white space around it; empty when the bytes are
/// not UTF-8 or blank.
std::string commandWord(std::string_view bytes);

/// The watched file through which any process of the user controls this one: each write of one command word
/// performs it and empties the file. Unknown words are consumed as well, without a message, and so is a file
/// that fills a whole read, whatever it begins with. When the file cannot be watched there is no channel. Main
/// thread; lives as long as the application.
class CommandChannel {
public:
    static constexpr std::string_view defaultPath = "/tmp/.kestro_cmd";

    /// Creates the file at `path` unless it exists, and starts the watch. Both references outlive it.
    CommandChannel(FileEvents& fileEvents, CommandTarget& target, std::string path);
    CommandChannel(const CommandChannel&) = delete;
    CommandChannel& operator=(const CommandChannel&) = delete;

private:
    void fileWasWritten();

    FileEvents& fileEvents_;
    CommandTarget& target_;
    const std::string path_;
    std::unique_ptr<FileEventSource> cmdSource_;
    Lifetime lifetime_;
};

}  // namespace kestro
