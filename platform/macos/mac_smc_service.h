#pragma once

#include "core/platform/smc_service.h"

namespace kestro {

/// The controller's driver in IOKit. Any thread, one call at a time. Sends only the two commands that read; any
/// other record fails without reaching the driver.
class MacSMCService final : public SMCService {
public:
    std::optional<std::uint32_t> open() override;
    bool callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) override;
    void close(std::uint32_t connection) override;
};

}  // namespace kestro
