#include "app/status_items/main_status_content.h"

#include "tests/app/simulated_kestro.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct Fixture : test::SimulatedKestro {
    MainStatusContent status{services()};

    void work(std::uint32_t busy) {
        for (std::size_t core = 0; core < mac.machHost.cores.size(); ++core) {
            mac.machHost.addTicks(core, {busy, 0, 100 - busy, 0});
        }
    }
};

TEST(MainStatusContent, ChangesOnlyTheFirstTime) {
    Fixture f;

    EXPECT_TRUE(f.status.update());
    EXPECT_FALSE(f.status.update());

    EXPECT_EQ(f.status.content().title, (StatusTitle{QStringLiteral(" RAM -- · 0 RPM"), 12, 500}));
    EXPECT_EQ(f.status.content().toolTip, QStringLiteral("Kestro: RAM -- · 0 RPM"));
    EXPECT_EQ(f.status.content().widestTitle, QStringLiteral(" RAM 100% · 9999 RPM"));
    EXPECT_EQ(f.status.content().symbol,
              (StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12}));
}

TEST(MainStatusContent, IsUnchangedWhileNothingVisibleChanges) {
    Fixture f;
    f.mac.advance(2s);
    f.status.update();
    const StatusContent before = f.status.content();

    f.mac.advance(2s);

    EXPECT_FALSE(f.status.update());
    EXPECT_EQ(f.status.content(), before);
}

TEST(MainStatusContent, FollowsAReading) {
    Fixture f;
    f.mac.advance(2s);
    f.status.update();

    f.mac.smc.setFloat("F0Ac", 1800);
    f.mac.advance(2s);

    EXPECT_TRUE(f.status.update());
    EXPECT_TRUE(f.status.content().title.text.endsWith(QStringLiteral("L:1800 R:1460")));
    EXPECT_TRUE(f.status.content().toolTip.endsWith(QStringLiteral("L:1800 R:1460")));
}

TEST(MainStatusContent, ChangesWhenOnlyTheLoadsInTheIconChange) {
    Fixture f;
    f.settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    f.mac.advance(2s);
    f.status.update();
    const QString title = f.status.content().title.text;

    f.work(70);
    f.mac.advance(2s);

    EXPECT_TRUE(f.status.update());
    ASSERT_TRUE(f.status.content().glance);
    EXPECT_EQ(f.status.content().glance->lowerPercent, 70);
    EXPECT_EQ(f.status.content().title.text, title);
}

TEST(MainStatusContent, DropsTheSymbolThatIsNoLongerListed) {
    Fixture f;
    f.status.update();

    f.settings.activeMenubarModules.set({MenubarModuleType::memory});

    EXPECT_TRUE(f.status.update());
    EXPECT_FALSE(f.status.content().symbol);
    EXPECT_EQ(f.status.content().title.text, QStringLiteral("RAM --"));
}

TEST(MainStatusContent, SpeaksTheFiguresBesideABareIcon) {
    Fixture f;
    f.settings.menubarIconStyle.set(MenubarIconStyle::iconOnly);

    f.status.update();

    EXPECT_TRUE(f.status.content().title.text.isEmpty());
    EXPECT_EQ(f.status.content().spokenText, QStringLiteral("RAM -- · 0 RPM"));
}

TEST(MainStatusContent, ReservesSpaceForAFasterFan) {
    Fixture f;
    f.mac.advance(2s);
    f.status.update();
    const QString title = f.status.content().title.text;

    f.mac.smc.setFloat("F0Mx", 12000);
    f.mac.advance(2s);

    EXPECT_TRUE(f.status.update());
    EXPECT_EQ(f.status.content().widestTitle, QStringLiteral(" RAM 100% · L:99999 R:9999"));
    EXPECT_EQ(f.status.content().title.text, title);
}

}  // namespace
}  // namespace kestro
