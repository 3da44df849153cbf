#pragma once

#include <optional>
#include <span>
#include <string>

#include "readout/line_format.h"

namespace kestro {

/// A request to Kestro, as a method of kestro.Readout.
enum class Request { togglePopover, showDashboard, showSettings, toggleKeepAwake };

/// A point of the screen in device pixels; 0, 0: unknown.
struct Point {
    int x = 0;
    int y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// The command line.
struct Options {
    enum class Action { follow, printOnce, request, help, version };

    Action action = Action::follow;
    LineForm form = LineForm::plain;
    bool isHost = false;    ///< registers itself as the program that shows the readout
    bool isSilent = false;  ///< prints nothing while it follows

    /// Ends after the first line that differs from this one.
    std::optional<std::string> lastLine;

    Request request = Request::togglePopover;  ///< for Action::request
    Point place;                               ///< of the popover
};

/// Parses the arguments after the program's name; nullopt, with `error` set: they are not valid.
std::optional<Options> parseOptions(std::span<const char* const> arguments, std::string& error);

/// The text of --help.
extern const char* const usage;

}  // namespace kestro
