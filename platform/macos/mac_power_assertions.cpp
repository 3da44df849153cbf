#include "platform/macos/mac_power_assertions.h"

#include "platform/macos/cf_values.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include <type_traits>
#include <utility>

namespace kestro {

namespace {

static_assert(std::is_same_v<IOPMAssertionID, PowerAssertionID>);
static_assert(kIOPMNullAssertionID == 0 && kIOPMAssertionLevelOn == 255);

}  // namespace

MacPowerAssertions::~MacPowerAssertions() {
    for (const PowerAssertionID id : held_) {
        IOPMAssertionRelease(id);
    }
}

std::optional<PowerAssertionID> MacPowerAssertions::create(const std::string& type, std::uint32_t level,
                                                           const std::string& name) {
    const auto typeText = makeString(type);
    const auto nameText = makeString(name);
    IOPMAssertionID id = kIOPMNullAssertionID;
    if (!typeText || !nameText ||
        IOPMAssertionCreateWithName(typeText.get(), level, nameText.get(), &id) != kIOReturnSuccess ||
        id == kIOPMNullAssertionID) {
        setReport({PowerAssertionReport::State::refused, {}});
        return std::nullopt;
    }
    held_.push_back(id);
    newest_ = id;
    setReport({PowerAssertionReport::State::held, {"macOS"}});
    return id;
}

void MacPowerAssertions::release(PowerAssertionID id) {
    if (std::erase(held_, id) > 0) {
        IOPMAssertionRelease(id);
        if (id == newest_) {
            setReport({});
        }
    }
}

void MacPowerAssertions::setRevocationHandler(std::function<void(PowerAssertionID)>) {}

void MacPowerAssertions::setReport(PowerAssertionReport report) {
    report_ = std::move(report);
    if (const auto handler = reportHandler_) {
        handler();
    }
}

}  // namespace kestro
