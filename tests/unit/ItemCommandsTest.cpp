#include "ModelTest.h"

#include "model/ItemCommands.h"
#include "model/Pinning.h"
#include "settings/Settings.h"

namespace {

class ItemCommandsTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        app_ = run("App");
        item_ = itemOf("App", app_);
    }

    pid_t app_ = 0;
    BarItem item_;
};

}

TEST_F(ItemCommandsTest, TheWindowListHasTheTitledWindowsAndAsksForThemEachTime)
{
    world().processFaults(app_).needsManualAccessibility = true;
    openWindow(app_, { 0, 0, 50, 50 }, "Palette");
    openWindow(app_, { 0, 0, 800, 600 }, std::nullopt);
    openWindow(app_, { 0, 0, 800, 600 }, "Letter");
    Texts titles;
    for (const auto& listed : DockModel::windowList(item_))
        titles.push_back(listed.title);
    EXPECT_EQ(titles, (Texts { "Letter", "Palette" }));
    DockModel::windowList(item_);
    EXPECT_EQ(count("AXManualAccessibility", app_), 2u);

    world().processFaults(app_).hangs = true;
    EXPECT_TRUE(DockModel::windowList(item_).empty());
    EXPECT_EQ(calls().all().back().heldUp, 1.0);
    item_.pid.reset();
    EXPECT_TRUE(DockModel::windowList(item_).empty());
}

TEST_F(ItemCommandsTest, PinningAndUnpinningAreKeptInTheSettings)
{
    item_.bundleURL = NSURL::URLWithString("file:///Applications/./App.app/");
    Settings::hiddenKeys.set({ "org.App", "other", "org.App" });
    DockModel::pin(item_);
    DockModel::pin(item_);
    EXPECT_EQ(Settings::hiddenKeys(), Texts { "other" });
    EXPECT_EQ(Settings::extraPinnedPaths(), Texts { path("App") });
    EXPECT_EQ(logged("pin: "), Texts { "pin: App" });

    Settings::extraPinnedPaths.set({ path("App"), "/b", path("App") });
    DockModel::unpin(item_);
    DockModel::unpin(item_);
    EXPECT_EQ(Settings::extraPinnedPaths(), Texts { "/b" });
    EXPECT_EQ(Settings::hiddenKeys(), (Texts { "other", "org.App" }));
    EXPECT_EQ(logged("unpin: "), Texts(2, "unpin: App"));

    item_.bundleURL.reset();
    item_.bundleID.reset();
    DockModel::pin(item_);
    EXPECT_EQ(logged("pin: ").size(), 1u) << "without a bundle there is nothing to pin but a key to hide";
    DockModel::unpin(item_);
    EXPECT_EQ(Settings::hiddenKeys().back(), "App");
}
