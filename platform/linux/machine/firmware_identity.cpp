#include "platform/linux/machine/firmware_identity.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace kestro {
namespace {

constexpr std::array<std::string_view, 26> fillers{"to be filled by o.e.m.",
                                                   "to be filled by oem",
                                                   "system product name",
                                                   "system manufacturer",
                                                   "system version",
                                                   "default string",
                                                   "not applicable",
                                                   "not specified",
                                                   "not available",
                                                   "not defined",
                                                   "none",
                                                   "n/a",
                                                   "unknown",
                                                   "oem",
                                                   "o.e.m.",
                                                   "product name",
                                                   "product version",
                                                   "lenovo product",
                                                   "all series",
                                                   "type1productconfigid",
                                                   "type1family",
                                                   "type1productversion",
                                                   "invalid",
                                                   "empty",
                                                   "system name",
                                                   "undefined"};

struct Vendor {
    std::string_view prefix;
    std::string_view name;
};

/// Texts with which hypervisors begin a field of their tables.
constexpr std::array<Vendor, 22> hypervisors{{{"KVM", "QEMU/KVM"},
                                              {"QEMU", "QEMU/KVM"},
                                              {"Standard PC (", "QEMU/KVM"},
                                              {"VMware", "VMware"},
                                              {"VMW", "VMware"},
                                              {"VirtualBox", "VirtualBox"},
                                              {"innotek GmbH", "VirtualBox"},
                                              {"Hyper-V", "Hyper-V"},
                                              {"Parallels", "Parallels"},
                                              {"Xen", "Xen"},
                                              {"HVM domU", "Xen"},
                                              {"Apple Virtualization", "Apple Virtualization"},
                                              {"Bochs", "Bochs"},
                                              {"BHYVE", "bhyve"},
                                              {"AHV", "Nutanix AHV"},
                                              {"RHEV", "Red Hat Virtualization"},
                                              {"oVirt", "oVirt"},
                                              {"KubeVirt", "KubeVirt"},
                                              {"Cloud Hypervisor", "Cloud Hypervisor"},
                                              {"crosvm", "crosvm"},
                                              {"ACRN", "ACRN"},
                                              {"SmartDC HVM", "SmartOS"}}};

/// Manufacturers of nothing but cloud instances.
constexpr std::array<std::string_view, 17> clouds{"Amazon EC2",    "DigitalOcean",
                                                  "Hetzner",       "Alibaba Cloud",
                                                  "Tencent Cloud", "Huawei Cloud",
                                                  "HUAWEICLOUD",   "Scaleway",
                                                  "Vultr",         "Linode",
                                                  "Akamai",        "UpCloud",
                                                  "Exoscale",      "OpenStack Foundation",
                                                  "CloudSigma",    "OVHcloud",
                                                  "Yandex"};

bool isCode(std::string_view text) {
    return text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

/// Whether a version field holds a name, not a revision such as "07" or "Rev 1.0".
bool isName(std::string_view text) {
    constexpr std::size_t shortest = 4;
    const auto lower = lowered(text);
    const auto letters = std::ranges::count_if(lower, [](char letter) { return letter >= 'a' && letter <= 'z'; });
    return static_cast<std::size_t>(letters) >= shortest && !lower.starts_with("rev") && lower != "lenovo";
}

/// Vendor and product as one name without repetition: "Alibaba Cloud ECS".
std::string joined(const std::string& vendor, const std::string& product) {
    const auto firstWord = std::string_view(vendor).substr(0, vendor.find(' '));
    return product.empty()                  ? vendor
           : product.starts_with(firstWord) ? product
                                            : fmt::format("{} {}", vendor, product);
}

std::optional<std::string> cloudName(const FirmwareIdentity& firmware) {
    // Older Amazon instances run on Xen and say so only in the version; Oracle's say so only on the chassis.
    if (firmware.version.ends_with("amazon")) {
        return "Amazon EC2";
    }
    if (firmware.chassisTag == "OracleCloud.com") {
        return "Oracle Cloud";
    }
    if (firmware.product == "Google Compute Engine" || firmware.product.starts_with("OpenStack ")) {
        return firmware.product;
    }
    // The tag of every Azure instance; Hyper-V elsewhere has others.
    if (firmware.chassisTag == "7783-7084-3265-9085-8269-3286-77") {
        return "Microsoft Azure";
    }
    const bool isCloud = std::ranges::find(clouds, firmware.vendor) != clouds.end();
    return isCloud ? std::optional(joined(firmware.vendor, firmware.product)) : std::nullopt;
}

}  // namespace

FirmwareIdentity FirmwareIdentity::read(const std::string& root) {
    const auto field = [&](std::string_view name) {
        const auto text = readFile(pathUnder(root, fmt::format("/sys/class/dmi/id/{}", name)));
        auto shown = text ? displayText(*text) : std::nullopt;
        return shown && !isFirmwareFiller(*shown) ? std::move(*shown) : std::string();
    };
    return {field("sys_vendor"), field("product_name"), field("product_version"), field("product_family"),
            field("board_name"), field("board_vendor"), field("bios_vendor"),     field("chassis_asset_tag")};
}

bool isFirmwareFiller(std::string_view text) {
    const auto name = lowered(trimmed(text));
    const bool isOneCharacter = name.find_first_not_of(name.empty() ? ' ' : name.front()) == std::string::npos;
    return isOneCharacter || std::ranges::find(fillers, name) != fillers.end();
}

std::optional<std::string> productName(const FirmwareIdentity& firmware) {
    const auto vendor = lowered(firmware.vendor);
    const bool namesByVersion = vendor == "lenovo" || vendor == "ibm";
    if (namesByVersion && (firmware.product.empty() || isCode(firmware.product))) {
        for (const auto& name : {firmware.version, firmware.family}) {
            if (isName(name)) {
                return name;
            }
        }
    }
    if (namesByVersion && firmware.product.ends_with("]-")) {
        return firmware.product.substr(0, firmware.product.find(" -["));
    }
    for (const auto& name : {firmware.product, firmware.board}) {
        if (!name.empty()) {
            return name;
        }
    }
    return std::nullopt;
}

std::optional<std::string> virtualMachineName(const FirmwareIdentity& firmware) {
    if (auto cloud = cloudName(firmware)) {
        return cloud;
    }
    if (firmware.vendor == "Microsoft Corporation" && firmware.product == "Virtual Machine") {
        return "Hyper-V";
    }
    if (firmware.vendor == "OpenBSD" && firmware.product == "VMM") {
        return "OpenBSD VMM";
    }
    for (const auto& field : {firmware.product, firmware.vendor, firmware.boardVendor, firmware.biosVendor}) {
        const auto* const known = std::ranges::find_if(
            hypervisors, [&](const Vendor& hypervisor) { return field.starts_with(hypervisor.prefix); });
        if (known != hypervisors.end()) {
            return std::string(known->name);
        }
    }
    return std::nullopt;
}

}  // namespace kestro
