#include "platform/linux/network/serial_link.h"

#include "platform/linux/network/interface_facts.h"
#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::string_literals;
using test::TemporaryTree;

/// A machine with a modem, and a daemon that serves "ppp0".
class SerialLinkTest : public testing::Test {
protected:
    SerialLinkTest() {
        tree.write("/sys/class/tty/ttyUSB0/device/port_number", "0\n")
            .write("/sys/class/tty/ptmx/dev", "5:2\n")
            .write("/sys/class/net/ppp0/type", "512\n")
            .write("/sys/class/net/ppp0/uevent", "DEVTYPE=ppp\nINTERFACE=ppp0\nIFINDEX=9\n")
            .write("/sys/class/net/eth0/type", "1\n")
            .write("/sys/class/net/eth0/device/vendor", "0x8086\n")
            .write("/run/ppp0.pid", "812\n");
    }

    bool isSerial(const std::string& arguments) {
        tree.write("/proc/812/cmdline", arguments);
        return isSerialLink(tree.root(), "ppp0");
    }

    TemporaryTree tree;
};

TEST_F(SerialLinkTest, HasADaemonWithATerminal) {
    EXPECT_TRUE(isSerial("/usr/sbin/pppd\0nodetach\0lock\0nodefaultroute\0ttyUSB0\0noipdefault\0"s));
    EXPECT_TRUE(isSerial("/usr/sbin/pppd\0/dev/ttyUSB0\000115200\0"s));
}

TEST_F(SerialLinkTest, FollowsTheLinksOfATerminal) {
    tree.write("/dev/ttyUSB0", "").link("/dev/modem", "/dev/ttyUSB0");

    EXPECT_TRUE(isSerial("/usr/sbin/pppd\0modem\0crtscts\0/dev/modem\0"s));
}

TEST_F(SerialLinkTest, IsNeitherPPPoENorAVPN) {
    EXPECT_FALSE(isSerial("/usr/sbin/pppd\0plugin\0rp-pppoe.so\0nic-eth0\0"s));
    EXPECT_FALSE(isSerial("/usr/sbin/pppd\0/dev/pts/3\0passive\0nodetach\0:\0file\0/run/options\0"s));
    EXPECT_FALSE(isSerial("/usr/sbin/pppd\0plugin\0pppol2tp.so\0pppol2tp\08\0"s));
    EXPECT_FALSE(isSerial("/usr/sbin/pppd\0call\0..\0/dev/\0ptmx\0"s));
}

TEST_F(SerialLinkTest, IsUnknownWithoutADaemon) {
    EXPECT_FALSE(isSerialLink(tree.root(), "ppp0")) << "it has ended";
    EXPECT_FALSE(isSerial("/usr/bin/minicom\0ttyUSB0\0"s)) << "another program has its number";
    EXPECT_FALSE(isSerial(""));

    tree.write("/proc/812/cmdline", "/usr/sbin/pppd\0ttyUSB0\0"s);
    EXPECT_FALSE(isSerialLink(tree.root(), "ppp1"));
    tree.rename("/run/ppp0.pid", "/run/ppp1.pid");
    EXPECT_TRUE(isSerialLink(tree.root(), "ppp1"));
}

TEST_F(SerialLinkTest, IsCountedBesideACardThatIsUp) {
    for (const bool isSerial : {true, false}) {
        tree.write("/proc/812/cmdline", isSerial ? "/usr/sbin/pppd\0ttyUSB0\0"s : "/usr/sbin/pppd\0nic-eth0\0"s);
        std::vector<InterfaceFacts> facts{readInterfaceFacts(tree.root(), "eth0"),
                                          readInterfaceFacts(tree.root(), "ppp0")};
        for (auto& each : facts) {
            each.isUp = true;
        }

        EXPECT_EQ(standings(facts)[0], InterfaceStanding::counted);
        EXPECT_EQ(standings(facts)[1], isSerial ? InterfaceStanding::counted : InterfaceStanding::inner);
    }
}

}  // namespace
}  // namespace kestro
