#include "readout/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace kestro {

const char* const usage =
    "Usage: kestro-readout [--once | --after LINE]\n"
    "                      [--json | --waybar | --i3bar | --genmon] [--host] [--silent]\n"
    "       kestro-readout --show popover [--at X,Y] | dashboard | settings\n"
    "       kestro-readout --toggle-keep-awake\n"
    "\n"
    "Prints Kestro's readout, one line whenever it changes, and an empty line while\n"
    "Kestro is not running.\n"
    "\n"
    "  --once              print one line and exit; with status 1 if Kestro is not running\n"
    "  --after LINE        print the first line that differs from LINE and exit\n"
    "  --json              JSON with all parts of the readout\n"
    "  --waybar            JSON for a custom module of Waybar\n"
    "  --i3bar             the i3bar protocol, for i3bar and swaybar\n"
    "  --genmon            tags for Xfce's generic monitor; use it with --once\n"
    "  --host              have Kestro hide its own item as long as this program runs\n"
    "  --silent            print nothing\n"
    "  --show WHAT         show or hide the popover, or show the dashboard or the\n"
    "                      settings; starts Kestro if necessary\n"
    "  --at X,Y            the place of the popover, in pixels of the screen\n"
    "  --toggle-keep-awake keep the machine awake, or stop doing so\n"
    "  --help, --version   print this text, or the version, and exit\n";

namespace {

template <typename Value, std::size_t count>
using Table = std::array<std::pair<std::string_view, Value>, count>;

constexpr Table<LineForm, 4> forms{{{"--json", LineForm::json},
                                    {"--waybar", LineForm::waybar},
                                    {"--i3bar", LineForm::i3bar},
                                    {"--genmon", LineForm::genmon}}};

constexpr Table<Request, 3> surfaces{{{"popover", Request::togglePopover},
                                      {"dashboard", Request::showDashboard},
                                      {"settings", Request::showSettings}}};

template <typename Value, std::size_t count>
const Value* find(const Table<Value, count>& table, std::string_view word) {
    const auto* const found = std::ranges::find(table, word, &std::pair<std::string_view, Value>::first);
    return found == table.end() ? nullptr : &found->second;
}

std::optional<Point> pointOf(std::string_view text) {
    Point point;
    const char* const end = text.data() + text.size();
    const auto [comma, xError] = std::from_chars(text.data(), end, point.x);
    if (xError != std::errc() || comma == end || *comma != ',') {
        return std::nullopt;
    }
    const auto [last, yError] = std::from_chars(comma + 1, end, point.y);
    return yError == std::errc() && last == end ? std::optional(point) : std::nullopt;
}

/// Reads the options one after the other.
class Parser {
public:
    Parser(std::span<const char* const> arguments, std::string& error) : arguments_(arguments), error_(error) {}

    std::optional<Options> parse() {
        while (!arguments_.empty()) {
            if (!parseOption(next())) {
                return std::nullopt;
            }
            if (options_.action == Action::help || options_.action == Action::version) {
                return options_;
            }
        }
        return isConsistent() ? std::optional(options_) : std::nullopt;
    }

private:
    using Action = Options::Action;

    std::string_view next() {
        const std::string_view argument = arguments_.front();
        arguments_ = arguments_.subspan(1);
        return argument;
    }

    bool fail(const std::string& reason) {
        error_ = reason;
        return false;
    }

    bool parseOption(std::string_view option) {
        if (const LineForm* const form = find(forms, option)) {
            options_.form = *form;
            ++formCount_;
        } else if (option == "--help" || option == "--version") {
            options_.action = option == "--help" ? Action::help : Action::version;
        } else if (option == "--once") {
            options_.action = Action::printOnce;
            ++followingCount_;
        } else if (option == "--host" || option == "--silent") {
            (option == "--host" ? options_.isHost : options_.isSilent) = true;
            ++followingCount_;
        } else if (option == "--toggle-keep-awake") {
            setRequest(Request::toggleKeepAwake);
        } else {
            return parseValue(option);
        }
        return true;
    }

    bool parseValue(std::string_view option) {
        if (option != "--show" && option != "--at" && option != "--after") {
            return fail("there is no option \"" + std::string(option) + '"');
        }
        if (arguments_.empty()) {
            return fail(std::string(option) + " needs a value");
        }
        const std::string_view value = next();
        if (option == "--after") {
            options_.lastLine = value;
            ++followingCount_;
            return true;
        }
        const auto wrong = [&] { return fail(std::string(option) + " takes no \"" + std::string(value) + '"'); };
        if (option == "--at") {
            const auto point = pointOf(value);
            hasPlace_ = true;
            options_.place = point.value_or(Point());
            return point || wrong();
        }
        const Request* const surface = find(surfaces, value);
        if (surface == nullptr) {
            return wrong();
        }
        setRequest(*surface);
        return true;
    }

    void setRequest(Request request) {
        options_.action = Action::request;
        options_.request = request;
        ++requestCount_;
    }

    bool isConsistent() {
        if (formCount_ > 1) {
            return fail("only one form of output is possible");
        }
        if (requestCount_ > 1 || (requestCount_ == 1 && formCount_ + followingCount_ > 0)) {
            return fail("a request cannot be combined with other options");
        }
        if (hasPlace_ && (requestCount_ == 0 || options_.request != Request::togglePopover)) {
            return fail("--at belongs to --show popover");
        }
        if (options_.action == Action::printOnce && followingCount_ > 1) {
            return fail("--once follows nothing");
        }
        return true;
    }

    std::span<const char* const> arguments_;
    std::string& error_;
    Options options_;
    int formCount_ = 0;
    int followingCount_ = 0;
    int requestCount_ = 0;
    bool hasPlace_ = false;
};

}  // namespace

std::optional<Options> parseOptions(std::span<const char* const> arguments, std::string& error) {
    return Parser(arguments, error).parse();
}

}  // namespace kestro
