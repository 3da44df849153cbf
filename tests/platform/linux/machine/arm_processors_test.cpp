#include "platform/linux/machine/arm_processors.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(ArmProcessorName, CombinesTheMakerAndTheCore) {
    EXPECT_EQ(armProcessorName(0x41, 0x810), "Arm ARM810") << "the first entry";
    EXPECT_EQ(armProcessorName(0x41, 0xd0c), "Arm Neoverse N1");
    EXPECT_EQ(armProcessorName(0x41, 0xd85), "Arm Cortex-X925");
    EXPECT_EQ(armProcessorName(0x4e, 0x010), "NVIDIA Olympus");
    EXPECT_EQ(armProcessorName(0x51, 0x001), "Qualcomm Oryon");
    EXPECT_EQ(armProcessorName(0x61, 0x023), "Apple M1 Firestorm");
    EXPECT_EQ(armProcessorName(0x70, 0x663), "Phytium FTC663");
    EXPECT_EQ(armProcessorName(0xc0, 0xac4), "AmpereOne A") << "the last entry";
}

TEST(ArmProcessorName, KeepsTheNumbersOfDifferentMakersApart) {
    EXPECT_EQ(armProcessorName(0x41, 0xd40), "Arm Neoverse V1");
    EXPECT_EQ(armProcessorName(0x48, 0xd40), "HiSilicon Cortex-A76");
    EXPECT_EQ(armProcessorName(0x6d, 0xd49), "Microsoft Azure Cobalt 100");
}

TEST(ArmProcessorName, NamesAtLeastTheMaker) {
    EXPECT_EQ(armProcessorName(0x41, 0xfff), "Arm processor");
    EXPECT_EQ(armProcessorName(0xc0, 0xfff), "Ampere processor");
    EXPECT_EQ(armProcessorName(0x61, 0x000), "Apple processor") << "in a virtual machine";
    EXPECT_FALSE(armProcessorName(0x00, 0xd03));
    EXPECT_FALSE(armProcessorName(0xff, 0xfff));
}

}  // namespace
}  // namespace kestro
