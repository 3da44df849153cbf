#pragma once

#include "core/base/lifetime.h"
#include "core/platform/run_loop.h"
#include "core/platform/user_defaults.h"

namespace kestro {

/// The preferences of this application and user, from CFPreferences. The values that were set in one turn of the
/// run loop are stored together at its end. Main thread; the run loop outlives this object. Values of other kinds
/// than the port has, such as dates, read as missing. A value that cannot be stored, because its text is not
/// UTF-8, is dropped.
class MacUserDefaults final : public UserDefaults {
public:
    explicit MacUserDefaults(RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Flushes.
    ~MacUserDefaults() override;
    MacUserDefaults(const MacUserDefaults&) = delete;
    MacUserDefaults& operator=(const MacUserDefaults&) = delete;

    std::optional<PreferenceValue> object(std::string_view key) const override;
    void set(std::string_view key, PreferenceValue value) override;

    /// Hands everything over to the system's preferences service, which also outlives a crash.
    void flush();

private:
    void flushAtEndOfTurn();

    RunLoop& runLoop_;
    bool isFlushDue_ = false;  ///< something was set since the last flush
    Lifetime lifetime_;
};

}  // namespace kestro
