#pragma once

#include "core/base/lifetime.h"
#include "core/model/fan_curve.h"
#include "core/model/settings_enumerations.h"
#include "core/platform/file_events.h"

#include <QSize>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kestro {

/// The actions that command words trigger. Main thread.
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

    /// Shows the dashboard, then resizes it, keeping its bottom-left corner in place.
    virtual void showDashboard(QSize size) = 0;

    virtual void hideDashboard() = 0;
};

/// Performs the command that matches `word` exactly, including case. False: there is none.
bool performCommand(std::string_view word, CommandTarget& target);

/// The command word in a file's contents: the text without surrounding white space; empty when the bytes are
/// blank or not UTF-8.
std::string commandWord(std::string_view bytes);

/// The watched file through which any process of the user controls this one: each write of a command word runs
/// the command and empties the file. Unknown words are discarded silently, and so is a file that fills a whole
/// read, whatever it begins with. If the file cannot be watched, there is no channel. Main thread; lives as long
/// as the application.
class CommandChannel {
public:
    static constexpr std::string_view defaultPath = "/tmp/.kestro_cmd";

    /// Creates the file at `path` if it does not exist, and starts watching it. Both references outlive this
    /// object.
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
