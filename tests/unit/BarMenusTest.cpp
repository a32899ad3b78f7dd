#include "ModelTest.h"

#include "bar/BarMenus.h"
#include "settings/Settings.h"

namespace {

class BarMenusTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        mail_ = run("Mail");
        item_ = itemOf("Mail", mail_);
    }

    void TearDown() override
    {
        NSMenu::cancelTracking();
        ModelTest::TearDown();
    }

    /// Its entries: "✓" for a tick, "(…)" for a disabled one, "-" for a separator, " >" before a submenu.
    static std::string described(const NSMenu& menu)
    {
        std::string all;
        for (const NSMenuItem& item : menu.itemArray()) {
            const std::string text = item.isEnabled() ? item.title() : '(' + item.title() + ')';
            all += (all.empty() ? "" : ", ") + std::string(item.state() ? "\u2713 " : "")
                + (item.isSeparatorItem() ? "-" : text) + (item.submenu() ? " >" : "")
                + (item.keyEquivalent().empty() ? "" : " " + item.keyEquivalent());
        }
        return all;
    }

    void choose(const NSMenu& menu, const std::string& title)
    {
        const auto& items = menu.itemArray();
        const auto found = std::ranges::find(items, title, &NSMenuItem::title);
        ASSERT_NE(found, items.end()) << title;
        menu.performActionForItem(static_cast<std::size_t>(found - items.begin()));
        settle();
    }

    pid_t mail_ = 0;
    BarItem item_;
};

}

TEST_F(BarMenusTest, TheItemMenuFollowsTheItem)
{
    const auto open = [&](std::optional<std::string> title) { openWindow(mail_, { 0, 0, 800, 600 }, title); };
    const struct {
        const char* what;
        std::function<void()> change;
        std::string entries;
    } rows[] {
        { "no window has a title", [&] { open({}); },
            "(Mail), -, New Window, Hide, -, Pin to Taskbar, -, Quit, Force Quit" },
        { "one has", [&] { open("Inbox"); },
            "(Mail), -, Show window >, New Window, Hide, -, Pin to Taskbar, -, Quit, Force Quit" },
        { "hidden and pinned", [&] { world().hide(mail_), item_.isPinned = true; },
            "(Mail), -, Show window >, New Window, Show, -, Unpin from Taskbar, -, Quit, Force Quit" },
        { "doesn't run", [&] { item_.pid.reset(); }, "(Mail), -, New Window, -, Unpin from Taskbar" },
    };
    for (const auto& row : rows) {
        row.change();
        EXPECT_EQ(described(*BarMenus::itemMenu(item_)), row.entries) << row.what;
    }
}

TEST_F(BarMenusTest, EachEntryOfTheItemMenuDoesWhatItSays)
{
    openWindow(mail_, { 0, 0, 800, 600 }, "Other");
    const std::uint32_t inbox = openWindow(mail_, { 0, 0, 800, 600 }, "Inbox");
    world().setMinimised(inbox, true);
    auto menu = BarMenus::itemMenu(item_);

    choose(*menu->itemArray()[2].submenu(), "Inbox");
    EXPECT_EQ(world().frontmost(), mail_);
    EXPECT_FALSE(world().window(inbox)->isMinimised);

    choose(*menu, "New Window");
    EXPECT_EQ(count("openAnother"), 1u);

    choose(*menu, "Hide");
    EXPECT_TRUE(world().process(mail_)->record->isHidden);
    choose(*menu, "Hide");
    EXPECT_FALSE(world().process(mail_)->record->isHidden) << "the opposite of what it is by now";

    choose(*menu, "Pin to Taskbar");
    EXPECT_EQ(Settings::extraPinnedPaths(), (Texts { path("Mail") }));
    item_.isPinned = true;
    choose(*BarMenus::itemMenu(item_), "Unpin from Taskbar");
    EXPECT_EQ(Settings::extraPinnedPaths(), Texts());

    choose(*menu, "Quit");
    EXPECT_EQ(count("terminate", mail_), 1u);
    for (const char* late : { "Hide", "Quit", "Force Quit" })
        choose(*menu, late);
    choose(*menu->itemArray()[2].submenu(), "Inbox");
    EXPECT_EQ(count("terminate") + count("forceTerminate") + count("hide"), 2u) << "it has quit meanwhile";

    item_.pid = run("Mail");
    choose(*BarMenus::itemMenu(item_), "Force Quit");
    EXPECT_EQ(count("forceTerminate", item_.pid), 1u);
}

TEST_F(BarMenusTest, TheBarMenuShowsAndChangesTheSettings)
{
    openWindow(mail_);
    EXPECT_EQ(described(*BarMenus::barMenu()),
        "This desktop only, ✓ Keep windows above bar, -, Show Desktop, Hide Taskbar, -, Settings… ,, Quit Vantry q");

    choose(*BarMenus::barMenu(), "This desktop only");
    choose(*BarMenus::barMenu(), "Keep windows above bar");
    choose(*BarMenus::barMenu(), "Show Desktop");
    EXPECT_TRUE(Settings::currentSpaceOnly());
    EXPECT_FALSE(Settings::autoFitWindows());
    EXPECT_TRUE(world().process(mail_)->record->isHidden);
    EXPECT_EQ(described(*BarMenus::barMenu()),
        "✓ This desktop only, Keep windows above bar, -, Restore Windows, Hide Taskbar, -, Settings… ,, Quit Vantry q");

    choose(*BarMenus::barMenu(), "Restore Windows");
    EXPECT_FALSE(world().process(mail_)->record->isHidden);
    choose(*BarMenus::barMenu(), "Settings\u2026");

    choose(*BarMenus::barMenu(), "Hide Taskbar");
    EXPECT_FALSE(Settings::barVisible());
}
