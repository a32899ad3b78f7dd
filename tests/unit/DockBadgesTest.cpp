#include "ModelTest.h"

#include "settings/Settings.h"
#include "system/DockBadges.h"

namespace {

using Map = DockBadges::Map;

class DockBadgesTest : public ModelTest {
protected:
    void describe() override
    {
        desk.pinnedApp("Mail");
        desk.pinnedApp("Chat");
        desk.badges = { { "Mail", "3" }, { "Chat", "" } };
    }

    void SetUp() override
    {
        ModelTest::SetUp();
        dock_ = world().processNamed("com.apple.dock")->pid();
    }

    pid_t dock_ = 0;
    const Map three_ { { "Mail", "3" } };
};

}

TEST_F(DockBadgesTest, TheDockIsReadOnceASecond)
{
    EXPECT_EQ(DockBadges::current(), three_);
    EXPECT_EQ(logged("badges: ").size(), 1u);
    const auto before = calls().all().size();
    Settings::showBadges.set(false);
    EXPECT_EQ(DockBadges::current(), Map());
    Settings::showBadges.set(true);
    EXPECT_EQ(DockBadges::current(), three_) << "the last ones are back at once";
    EXPECT_EQ(calls().all().size(), before);
    world().setBadge("Mail", std::nullopt);
    advance(0.99);
    EXPECT_EQ(DockBadges::current(), three_);
    advance(0.02);
    EXPECT_EQ(DockBadges::current(), Map());
    EXPECT_EQ(logged("badges: ").size(), 1u) << "an empty reading isn't told";
}

TEST_F(DockBadgesTest, AReadingThatFailsKeepsTheLastOneAndWaitsItsSecondToo)
{
    DockBadges::current();
    advance(1.1);
    world().setBadge("Mail", "4");
    world().processFaults(dock_).hangs = true;
    EXPECT_EQ(DockBadges::current(), three_);
    EXPECT_EQ(calls().all().back().heldUp, 0.5);
    advance(0.5);
    world().processFaults(dock_).hangs = false;
    EXPECT_EQ(DockBadges::current(), three_);
    advance(0.6);
    EXPECT_EQ(DockBadges::current(), (Map { { "Mail", "4" } }));

    advance(1.1);
    world().faults().dockMissing = true;
    world().quit(dock_);
    EXPECT_EQ(DockBadges::current(), (Map { { "Mail", "4" } }));
}
