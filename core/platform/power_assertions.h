#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Identifies a held assertion; 0 is never one.
using PowerAssertionID = std::uint32_t;

/// What became of the newest request for an assertion.
struct PowerAssertionReport {
    enum class State : std::uint8_t {
        none,     ///< nothing was requested, or it has been released
        pending,  ///< no reply yet
        held,
        lost,  ///< it was held, and the system is asked again as soon as possible
        refused,
    };

    State state = State::none;
    std::vector<std::string> holders;  ///< the services that hold it, under the names that the user knows

    friend bool operator==(const PowerAssertionReport&, const PowerAssertionReport&) = default;
};

/// Power-management assertions, which keep the machine or its display from idle sleep. Main thread. An assertion
/// ends with `release`, or at the latest when the process ends, even in a crash.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;

    /// Type "PreventUserIdleDisplaySleep" (display and system) or "PreventUserIdleSystemSleep" (system only),
    /// level 255 (on), and the name that the system shows. nullopt: refused. Never blocks for more than 50 ms:
    /// without an answer by then, the assertion counts as granted, and a later refusal is reported to the
    /// revocation handler.
    virtual std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                                   const std::string& name) = 0;

    /// Releases the assertion; an unknown identifier is ignored.
    virtual void release(PowerAssertionID id) = 0;

    /// Called on the main thread when the system refuses or revokes an assertion that `create` returned. The
    /// identifier is then no longer held. One handler; an empty one removes it.
    virtual void setRevocationHandler(std::function<void(PowerAssertionID)> handler) = 0;

    /// Who holds the newest assertion, or why there is none.
    virtual PowerAssertionReport report() const = 0;

    /// Called on the main thread whenever the report may have changed; inside `create` and `release`, too. One
    /// handler; an empty one removes it.
    virtual void setReportHandler(std::function<void()> handler) = 0;
};

}  // namespace kestro
