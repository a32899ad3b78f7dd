#include "ModelTest.h"

#include "system/SpaceScanner.h"
#include "windowserver/Damage.h"

namespace {

class SpaceScannerTest : public ModelTest {
protected:
    void describe() override
    {
        desk.displays = { display(1, "MAIN", { 0, 0, 1440, 900 }, { 1, 2 }),
            display(2, "SECOND", { 1440, 0, 800, 600 }, { 20, 21 }) };
        desk.displays[0].spaces.push_back({ .id = 7, .type = embedded::Scenario::Space::fullScreen, .pid = 4242 });
    }
};

}

TEST_F(SpaceScannerTest, ListsTheFirstDisplaysSpacesWithTheWindowsOfRegularApplications)
{
    const pid_t editor = run("Editor");
    const pid_t mail = run("Mail");
    const pid_t agent = run("Agent", host::ActivationPolicy::accessory);
    const auto small = openWindow(editor, { 10, 10, 50, 50 });
    const auto everywhere = openWindow(mail);
    world().setSpaces(everywhere, { 1, 2, 7 });
    const auto front = openWindow(editor);
    openWindow(agent);
    world().setLayer(openWindow(editor), 3);

    const auto spaces = SpaceScanner::scan();
    ASSERT_EQ(spaces.size(), 3u);
    EXPECT_EQ(
        spaces[0].windows, (std::vector<SpaceWindow> { { small, editor }, { everywhere, mail }, { front, editor } }));
    EXPECT_EQ(spaces[0].appPIDs(), (std::vector { editor, mail }));
    EXPECT_TRUE(spaces[0].isActive);
    EXPECT_FALSE(spaces[0].isFullScreen());
    EXPECT_EQ(spaces[1].appPIDs(), std::vector { mail });
    EXPECT_FALSE(spaces[1].isActive);
    EXPECT_TRUE(spaces[2].isFullScreen());
    EXPECT_EQ(spaces[2].appPIDs(), std::vector<pid_t> { 4242 });
    EXPECT_EQ(log_, Texts { "scan: 3 spaces, active=1" });
}

TEST_F(SpaceScannerTest, EachDisplayHasItsActiveSpaceAndWithoutAListThereIsStillOne)
{
    world().showSpace(21);
    EXPECT_EQ(SpaceScanner::activeSpaceIDForDisplay("MAIN"), 1u);
    EXPECT_EQ(SpaceScanner::activeSpaceIDForDisplay("SECOND"), 21u);
    for (const auto& display : { std::optional<std::string>("UNLISTED"), std::optional<std::string>() })
        EXPECT_EQ(SpaceScanner::activeSpaceIDForDisplay(display), SpaceScanner::activeSpaceID());

    windowServerDamage().listMissing = true;
    EXPECT_EQ(SpaceScanner::scan().size(), 3u);
    log_.clear();
    windowServerDamage().displaySpacesMissing = true;
    EXPECT_TRUE(SpaceScanner::scan().empty());
    EXPECT_EQ(log_, Texts { "CGSCopyManagedDisplaySpaces returned nothing" });
    EXPECT_TRUE(SpaceScanner::activeSpacesByDisplay().empty());
    EXPECT_EQ(SpaceScanner::activeSpaceIDForDisplay("MAIN"), 1u);
}
