#include "core/platform/smc_record.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/ps/IOPowerSources.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <algorithm>
#include <cstring>

namespace kestro::fakes {

namespace {

constexpr std::uint8_t keyNotFound = 0x84;

FakeMac& mac() {
    return FakeMac::current();
}

FakeIOKit& ioKit() {
    return mac().ioKit;
}

/// Only the key, the command and, for reading bytes, the size may be set.
bool isWellFormed(const SMCRecord& input) {
    SMCRecord rest = input;
    const auto command = input[smc::commandOffset];
    smc::write32(rest, smc::keyOffset, 0);
    rest[smc::commandOffset] = 0;
    if (command == smc::readBytesCommand) {
        smc::write32(rest, smc::sizeOffset, 0);
    }
    return rest == SMCRecord{} && (command == smc::readBytesCommand || command == smc::readInformationCommand);
}

SMCRecord answerOf(const SMCRecord& input) {
    SMCRecord output{};
    const auto found = ioKit().keys.find(smc::read32(input, smc::keyOffset));
    if (found == ioKit().keys.end()) {
        output[smc::resultOffset] = keyNotFound;
    } else if (input[smc::commandOffset] == smc::readInformationCommand) {
        smc::write32(output, smc::sizeOffset, static_cast<std::uint32_t>(found->second.bytes.size()));
        smc::write32(output, smc::typeOffset, found->second.type);
    } else if (smc::read32(input, smc::sizeOffset) == found->second.bytes.size()) {
        std::ranges::copy(found->second.bytes, output.begin() + smc::bytesOffset);
    } else {
        ++ioKit().malformedRecords;
    }
    return output;
}

std::string textOf(CFStringRef string) {
    const auto* text = std::get_if<std::string>(&mac().objects.use(string, FakeType::string).value);
    return text != nullptr ? *text : std::string();
}

}  // namespace

void FakeIOKit::setKey(std::string_view key, std::string_view type, std::vector<std::uint8_t> bytes) {
    keys[smc::code(key)] = FakeKey{smc::code(type), std::move(bytes)};
}

void FakeIOKit::sendPowerMessage(std::uint32_t message, std::intptr_t argument) {
    if (powerClient && powerClient->isDelivered) {
        powerClient->callback(powerClient->context, 0, message, reinterpret_cast<void*>(argument));
    }
}

void FakeIOKit::announcePowerSources() {
    for (const auto index : powerSourceEvents) {
        mac().runLoop.sources.at(index).isSignalled = true;
    }
}

io_object_t FakeIOKit::hold(const std::string& what) {
    held[++last_] = what;
    return last_;
}

void FakeIOKit::letGo(io_object_t object, std::string_view what) {
    const auto found = held.find(object);
    if (found == held.end() || found->second != what) {
        misuse.push_back("releases something that is no " + std::string(what));
        return;
    }
    held.erase(found);
}

void FakeIOKit::appendHeld(std::vector<std::string>& all) const {
    for (const auto& [object, what] : held) {
        all.push_back(what);
    }
    if (!assertions.empty()) {
        all.push_back(std::to_string(assertions.size()) + " assertions");
    }
    if (holdsNotificationPort) {
        all.emplace_back("notification port");
    }
}

}  // namespace kestro::fakes

using namespace kestro;
using namespace kestro::fakes;

extern "C" {

const mach_port_t kIOMainPortDefault = 0;

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    if (mac().fails("IOServiceMatching")) {
        return nullptr;
    }
    auto* const matching = mac().objects.makeValue({FakeDictionary{{"IOProviderClass", {std::string(name)}}}});
    return reinterpret_cast<CFMutableDictionaryRef>(matching);
}

kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
    const auto request = FakeObjects::valueOf(mac().objects.use(matching, FakeType::dictionary));
    const auto& keys = std::get<FakeDictionary>(request.content);
    const bool isController = std::get<std::string>(keys.at("IOProviderClass").content) == "AppleSMC";
    mac().objects.release(matching);
    if (mac().fails("IOServiceGetMatchingServices") || mainPort != kIOMainPortDefault) {
        return kIOReturnError;
    }
    *existing = isController && ioKit().controllers > 0 ? ioKit().hold("iterator") : IO_OBJECT_NULL;
    return kIOReturnSuccess;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    if (mac().fails("IOIteratorNext") || !ioKit().held.contains(iterator)) {
        return IO_OBJECT_NULL;
    }
    return ioKit().hold("service");
}

kern_return_t IOObjectRelease(io_object_t object) {
    const auto found = ioKit().held.find(object);
    ioKit().letGo(object, found != ioKit().held.end() && found->second == "iterator" ? "iterator" : "service");
    return kIOReturnSuccess;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, std::uint32_t type,
                            io_connect_t* connection) {
    if (mac().fails("IOServiceOpen") || !ioKit().held.contains(service) || owningTask != mach_task_self() ||
        type != 0) {
        return kIOReturnNotPrivileged;
    }
    *connection = ioKit().hold("connection");
    return kIOReturnSuccess;
}

kern_return_t IOServiceClose(io_connect_t connection) {
    ioKit().letGo(connection, "connection");
    return kIOReturnSuccess;
}

kern_return_t IOConnectCallStructMethod(mach_port_t connection, std::uint32_t selector, const void* input,
                                        std::size_t inputSize, void* output, std::size_t* outputSize) {
    FakeIOKit& state = ioKit();
    ++state.commands;
    SMCRecord record{};
    if (mac().fails("IOConnectCallStructMethod")) {
        return kIOReturnError;
    }
    if (!state.held.contains(connection) || selector != 2 || inputSize != record.size() ||
        *outputSize != record.size()) {
        ++state.malformedRecords;
        return kIOReturnError;
    }
    std::memcpy(record.data(), input, record.size());
    state.malformedRecords += isWellFormed(record) ? 0 : 1;
    record = answerOf(record);
    *outputSize = state.recordSize;
    std::memcpy(output, record.data(), std::min(record.size(), state.recordSize));
    return kIOReturnSuccess;
}

CFTypeRef IOPSCopyPowerSourcesInfo() {
    if (mac().fails("IOPSCopyPowerSourcesInfo") || !ioKit().powerSources) {
        return nullptr;
    }
    // As in IOKit, this is an array of the descriptions.
    FakeList descriptions;
    for (const auto& source : *ioKit().powerSources) {
        descriptions.push_back(source ? FakeValue{*source} : FakeValue{OddObject{}});
    }
    return mac().objects.makeValue({descriptions});
}

CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef information) {
    const auto& descriptions = mac().objects.use(information, FakeType::array).children;
    if (mac().fails("IOPSCopyPowerSourcesList") || !ioKit().listsSources) {
        return nullptr;
    }
    auto* const list = mac().objects.make(FakeType::array);
    for (const FakeObject* description : descriptions) {
        mac().objects.retain(description);
        list->children.push_back(description);
    }
    return reinterpret_cast<CFArrayRef>(list);
}

CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef information, CFTypeRef source) {
    mac().objects.use(information, FakeType::array);
    mac().objects.use(source);
    // A source is its description, with nothing to release.
    return mac().fails("IOPSGetPowerSourceDescription") ? nullptr : static_cast<CFDictionaryRef>(source);
}

CFRunLoopSourceRef IOPSNotificationCreateRunLoopSource(IOPowerSourceCallbackType callback, void* context) {
    if (mac().fails("IOPSNotificationCreateRunLoopSource")) {
        return nullptr;
    }
    CFRunLoopSourceContext description{};
    description.info = context;
    description.perform = callback;
    ioKit().powerSourceEvents.push_back(mac().runLoop.sources.size());
    return CFRunLoopSourceCreate(kCFAllocatorDefault, 0, &description);
}

IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
                                     IOPMAssertionID* assertion) {
    const FakeAssertion request{textOf(type), level, textOf(name)};
    if (mac().fails("IOPMAssertionCreateWithName") || ioKit().refusesAssertions) {
        return kIOReturnNotPrivileged;
    }
    *assertion = ++ioKit().lastAssertion;
    ioKit().assertions[*assertion] = request;
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionRelease(IOPMAssertionID assertion) {
    if (ioKit().assertions.erase(assertion) == 0) {
        ioKit().misuse.emplace_back("IOPMAssertionRelease of an assertion that is not held");
    }
    return kIOReturnSuccess;
}

io_connect_t IORegisterForSystemPower(void* context, IONotificationPortRef* port,
                                      IOServiceInterestCallback callback, io_object_t* notifier) {
    static int portMemory = 0;
    if (mac().fails("IORegisterForSystemPower")) {
        return IO_OBJECT_NULL;
    }
    ioKit().powerClient = FakeIOKit::PowerClient{callback, context, false};
    ioKit().holdsNotificationPort = true;
    *port = reinterpret_cast<IONotificationPortRef>(&portMemory);
    *notifier = ioKit().hold("notifier");
    return ioKit().hold("connection");
}

IOReturn IODeregisterForSystemPower(io_object_t* notifier) {
    ioKit().letGo(*notifier, "notifier");
    ioKit().powerClient.reset();
    *notifier = IO_OBJECT_NULL;
    return kIOReturnSuccess;
}

IOReturn IOAllowPowerChange(io_connect_t rootPowerDomain, std::intptr_t notification) {
    if (ioKit().held.contains(rootPowerDomain)) {
        ioKit().allowedChanges.push_back(notification);
    }
    return kIOReturnSuccess;
}

CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef) {
    // Only ever added to the run loop, which starts the delivery. The port keeps it.
    return mac().fails("IONotificationPortGetRunLoopSource") ? nullptr : FakeRunLoop::powerSource();
}

void IONotificationPortDestroy(IONotificationPortRef) {
    if (!ioKit().holdsNotificationPort) {
        ioKit().misuse.emplace_back("IONotificationPortDestroy of a port that is not held");
    }
    ioKit().holdsNotificationPort = false;
}

}  // extern "C"
