#pragma once

#include "core/platform/smc_record.h"

#include <cstdint>
#include <optional>

namespace kestro {

/// The user client of the system management controller, "AppleSMC". Read-only by construction: the only commands
/// used are 9 (read key information) and 5 (read key bytes). Any thread, one call at a time. Allocates no memory
/// in steady state.
class SMCService {
public:
    virtual ~SMCService() = default;

    /// Opens a connection of type 0 and returns its handle, never 0. nullopt: there is no controller.
    virtual std::optional<std::uint32_t> open() = 0;

    /// `IOConnectCallStructMethod` with selector 2. False: the call failed and `output` is undefined.
    virtual bool callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) = 0;

    /// `IOServiceClose`.
    virtual void close(std::uint32_t connection) = 0;
};

}  // namespace kestro
