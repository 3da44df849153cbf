#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// What the firmware's tables say about the machine (SMBIOS). Empty: not stated, a
/// manufacturer's placeholder, or unfit for display.
struct FirmwareIdentity {
    std::string vendor = {};
    std::string product = {};
    std::string version = {};
    std::string family = {};
    std::string board = {};
    std::string boardVendor = {};
    std::string biosVendor = {};
    std::string chassisTag = {};

    /// From /sys/class/dmi/id.
    static FirmwareIdentity read(const std::string& root);
};

/// Whether a firmware text is a placeholder left in by the manufacturer, such as "To Be Filled By O.E.M." or
/// "System Product Name".
bool isFirmwareFiller(std::string_view text);

/// The name under which the machine is sold. Some makers keep it in another field than the product's, which holds
/// only a type code such as "20SNZ5GNUS". nullopt: not stated.
std::optional<std::string> productName(const FirmwareIdentity& firmware);

/// The hypervisor or the cloud service behind a virtual machine: "QEMU/KVM", "Amazon EC2 m5.large". nullopt: none
/// that the firmware names.
std::optional<std::string> virtualMachineName(const FirmwareIdentity& firmware);

}  // namespace kestro
