#include "platform/linux/machine/firmware_identity.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace kestro {
namespace {

TEST(IsFirmwareFiller, RecognisesManufacturersPlaceholders) {
    EXPECT_TRUE(isFirmwareFiller("To Be Filled By O.E.M."));
    EXPECT_TRUE(isFirmwareFiller(" System Product Name "));
    EXPECT_TRUE(isFirmwareFiller("Default string"));
    EXPECT_TRUE(isFirmwareFiller("0000000"));
    EXPECT_TRUE(isFirmwareFiller(""));
    EXPECT_FALSE(isFirmwareFiller("21CBCTO1WW"));
    EXPECT_FALSE(isFirmwareFiller("B550 AORUS ELITE V2"));
}

TEST(FirmwareIdentity, OmitsPlaceholdersAndUnsuitableText) {
    test::TemporaryTree tree;
    tree.write("/sys/class/dmi/id/sys_vendor", "ASUSTeK COMPUTER INC.\n")
        .write("/sys/class/dmi/id/product_name", "System Product Name\n")
        .write("/sys/class/dmi/id/board_name", "\xFF\xFE\n");

    const auto firmware = FirmwareIdentity::read(tree.root());

    EXPECT_EQ(firmware.vendor, "ASUSTeK COMPUTER INC.");
    EXPECT_EQ(firmware.product, "");
    EXPECT_EQ(firmware.board, "");
    EXPECT_FALSE(productName(firmware));
}

struct Product {
    FirmwareIdentity firmware;
    std::optional<std::string> name;
};

TEST(ProductName, IsTheNameUnderWhichAMachineIsSold) {
    const std::vector<Product> products{
        {{"LENOVO", "4384Z8S", "ThinkPad T510", "ThinkPad T510"}, "ThinkPad T510"},
        {{"LENOVO", "20SNZ5GNUS", "ThinkPad P17 Gen 1", ""}, "ThinkPad P17 Gen 1"},
        {{"LENOVO", "82A3", "Yoga Slim 7 14ARE05", "Yoga Slim 7 14ARE05"}, "Yoga Slim 7 14ARE05"},
        {{"LENOVO", "30C6S3WT00", "", "ThinkStation P330"}, "ThinkStation P330"},
        {{"LENOVO", "80MX", "Lenovo", "IDEAPAD"}, "IDEAPAD"},
        {{"LENOVO", "7X06CTO1WW", "07", ""}, "7X06CTO1WW"},
        {{"Lenovo", "ThinkSystem SR650 -[7X06CTO1WW]-", "07", "ThinkSystem"}, "ThinkSystem SR650"},
        {{"IBM", "23737WU", "ThinkPad T42", ""}, "ThinkPad T42"},
        {{"Dell Inc.", "XPS 13 9310", "", "XPS"}, "XPS 13 9310"},
        {{"Dell Inc.", "Precision 3640 Tower", "8Y6EHD3", ""}, "Precision 3640 Tower"},
        {{"Apple Inc.", "MacBookPro16,1", "1.0", "MacBook Pro"}, "MacBookPro16,1"},
        {{"ASUSTeK COMPUTER INC.", "", "", "", "PRIME Z390-A"}, "PRIME Z390-A"},
        {{}, std::nullopt},
    };

    for (const auto& [firmware, name] : products) {
        EXPECT_EQ(productName(firmware), name) << firmware.vendor << " " << firmware.product;
        EXPECT_FALSE(virtualMachineName(firmware)) << firmware.vendor << " " << firmware.product;
    }
}

TEST(VirtualMachineName, IsThatOfTheHypervisorOrCloud) {
    const std::vector<Product> machines{
        {{"QEMU", "Standard PC (i440FX + PIIX, 1996)", "pc-i440fx-8.2", "", "", "", "SeaBIOS"}, "QEMU/KVM"},
        {{"QEMU", "KVM Virtual Machine", "virt-8.2"}, "QEMU/KVM"},
        {{"Red Hat", "KVM", "RHEL-9.2.0 PC (Q35 + ICH9, 2009)"}, "QEMU/KVM"},
        {{"VMware, Inc.", "VMware20,1", "", "", "VBSA", "VMware, Inc.", "VMware, Inc."}, "VMware"},
        {{"VMware, Inc.", "VMware Virtual Platform"}, "VMware"},
        {{"innotek GmbH", "VirtualBox", "1.2", "Virtual Machine", "VirtualBox", "Oracle Corporation"},
         "VirtualBox"},
        {{"Microsoft Corporation", "Virtual Machine", "Hyper-V UEFI Release v4.1"}, "Hyper-V"},
        {{"Microsoft Corporation", "Virtual Machine", "7.0", "", "", "", "", "7783-7084-3265-9085-8269-3286-77"},
         "Microsoft Azure"},
        {{"Parallels International GmbH.", "Parallels ARM Virtual Machine"}, "Parallels"},
        {{"Xen", "HVM domU", "4.17"}, "Xen"},
        {{"Xen", "HVM domU", "4.11.amazon"}, "Amazon EC2"},
        {{"Apple Inc.", "Apple Virtualization Generic Platform", "1"}, "Apple Virtualization"},
        {{"Bochs", "Bochs", ""}, "Bochs"},
        {{"FreeBSD", "BHYVE", "1.0", "", "", "", "BHYVE"}, "bhyve"},
        {{"OpenBSD", "VMM"}, "OpenBSD VMM"},
        {{"Nutanix", "AHV", "10.0"}, "Nutanix AHV"},
        {{"Amazon EC2", "m5.large", "", "", "", "Amazon EC2", "Amazon EC2"}, "Amazon EC2 m5.large"},
        {{"Google", "Google Compute Engine", "", "", "Google Compute Engine", "Google", "Google"},
         "Google Compute Engine"},
        {{"DigitalOcean", "Droplet", "20171212"}, "DigitalOcean Droplet"},
        {{"Hetzner", "vServer", "20171111"}, "Hetzner vServer"},
        {{"Alibaba Cloud", "Alibaba Cloud ECS", "pc-i440fx-2.1"}, "Alibaba Cloud ECS"},
        {{"Tencent Cloud", "CVM", "3.0"}, "Tencent Cloud CVM"},
        {{"OpenStack Foundation", "OpenStack Nova", "27.1.0"}, "OpenStack Nova"},
        {{"QEMU", "Standard PC (Q35 + ICH9, 2009)", "", "", "", "", "", "OracleCloud.com"}, "Oracle Cloud"},
    };

    for (const auto& [firmware, name] : machines) {
        EXPECT_EQ(virtualMachineName(firmware), name) << firmware.vendor << " " << firmware.product;
    }
}

TEST(VirtualMachineName, IsAbsentForHardwareOfTheSameMakers) {
    EXPECT_FALSE(virtualMachineName({"Microsoft Corporation", "Surface Pro 7"}));
    EXPECT_FALSE(virtualMachineName({"Google", "Eve"}));
    EXPECT_FALSE(virtualMachineName({"Oracle Corporation", "ORACLE SERVER X8-2"}));
    EXPECT_FALSE(virtualMachineName({"Apple Inc.", "Macmini8,1"}));
}

}  // namespace
}  // namespace kestro
