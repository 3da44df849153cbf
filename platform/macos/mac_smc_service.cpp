#include "platform/macos/mac_smc_service.h"

#include "platform/macos/owned.h"

#include <IOKit/IOKitLib.h>

#include <cstddef>

namespace kestro {

namespace {

constexpr std::uint32_t recordSelector = 2;

static_assert(sizeof(SMCRecord) == 80);
static_assert(sizeof(io_connect_t) == sizeof(std::uint32_t));
static_assert(smc::sizeOffset == 28 && smc::typeOffset == 32 && smc::commandOffset == 42 &&
              smc::bytesOffset == 48);
static_assert(smc::code("FNum") == 0x464E756D && smc::code("flt ") == 0x666C7420 &&
              smc::code("ui8 ") == 0x75693820 && smc::code("ui16") == 0x75693136 &&
              smc::code("fpe2") == 0x66706532 && smc::code("sp78") == 0x73703738);

}  // namespace

std::optional<std::uint32_t> MacSMCService::open() {
    const CFMutableDictionaryRef matching = IOServiceMatching("AppleSMC");
    if (matching == nullptr) {
        return std::nullopt;
    }
    // Releases the dictionary, even if it fails.
    IOObject services;
    if (IOServiceGetMatchingServices(kIOMainPortDefault, matching, services.out()) != kIOReturnSuccess ||
        !services) {
        return std::nullopt;
    }
    const IOObject controller(IOIteratorNext(services.get()));
    io_connect_t connection = IO_OBJECT_NULL;
    if (!controller || IOServiceOpen(controller.get(), mach_task_self(), 0, &connection) != kIOReturnSuccess ||
        connection == IO_OBJECT_NULL) {
        return std::nullopt;
    }
    return connection;
}

bool MacSMCService::callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) {
    const auto command = input[smc::commandOffset];
    if (command != smc::readInformationCommand && command != smc::readBytesCommand) {
        return false;
    }
    std::size_t size = output.size();
    return IOConnectCallStructMethod(connection, recordSelector, input.data(), input.size(), output.data(),
                                     &size) == kIOReturnSuccess &&
           size == output.size();
}

void MacSMCService::close(std::uint32_t connection) {
    IOServiceClose(connection);
}

}  // namespace kestro
