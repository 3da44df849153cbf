#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kestro {

/// Identifies a held assertion; 0 is never one.
using PowerAssertionID = std::uint32_t;

/// Power-management assertions, which keep the machine or its display from idle sleep. Main thread. An assertion
/// ends with `release`, or at the latest when the process ends, even in a crash.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;

    /// Type "PreventUserIdleDisplaySleep" (display and system) or "PreventUserIdleSystemSleep" (system only),
    /// level 255 (on), and the name that the system shows. nullopt: refused. Never blocks for more than 200 ms:
    /// without an answer by then, the assertion counts as granted, and a later refusal is reported to the
    /// revocation handler.
    virtual std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                                   const std::string& name) = 0;

    /// Releases the assertion; an unknown identifier is ignored.
    virtual void release(PowerAssertionID id) = 0;

    /// Called on the main thread when the system refuses or revokes an assertion that `create` returned. The
    /// identifier is then no longer held. One handler; an empty one removes it.
    virtual void setRevocationHandler(std::function<void(PowerAssertionID)> handler) = 0;
};

}  // namespace kestro
