#include "unit/BareDesktop.h"

#include "appkit/NSWorkspace.h"
#include "bar/BarManager.h"
#include "bar/BarMenus.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "controls/Shortcuts.h"
#include "log/Log.h"
#include "model/AppHistory.h"
#include "model/Entries.h"
#include "search/Search.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"
#include "system/WindowIndex.h"
#include "tamer/WindowTamer.h"
#include "unit/Fixture.h"

#include <set>

namespace {

using Texts = std::vector<std::string>;

/// The whole program on a desktop that tells next to nothing: "mail" with two windows, and "notes" with one, in front.
class BareDesktopTest : public DesktopTest {
protected:
    void SetUp() override
    {
        host::Desktop::setCurrent(&desktop_);
        NSWorkspace::sharedWorkspace().followDesktop();
        Log::setSink([this](std::string_view line) { log_.emplace_back(line); });
        AppHistory::start();
        desktop_.show(1, "mail", "Inbox");
        desktop_.show(2, "mail", "Draft");
        settle();
        desktop_.show(3, "notes", "Shopping");
        settle();
        manager_ = std::make_shared<BarManager>();
        manager_->start();
        WindowTamer::start();
        Shortcuts::start();
        settle();
    }

    void TearDown() override
    {
        manager_.reset();
        Log::setSink(nullptr);
        stop();
    }

    BarView& bar() { return *manager_->controllers().begin()->second->view(); }

    Texts buttons()
    {
        WindowIndex::invalidate();
        Texts names;
        for (const BarItem& item : DockModel::entries(100, Displays::all().front()))
            names.push_back(item.name + (item.isFrontmost ? "*" : "") + (item.windowCount > 1 ? "+" : ""));
        return names;
    }

    CGPoint middle(int button)
    {
        const CGRect rect = bar().layoutItems().at(static_cast<std::size_t>(button)).rect;
        return { rect.midX(), rect.midY() };
    }

    void click(int button)
    {
        bar().mouseDown({ middle(button) });
        bar().mouseUp({ middle(button) });
        advance(2);
    }

    BareDesktop desktop_ { root().string(), { "mail", "notes", "paint" } };
    std::shared_ptr<BarManager> manager_;
    Texts log_;
};

}

TEST_F(BareDesktopTest, ButtonsStandForApplicationsOrTheirWindows)
{
    EXPECT_EQ(buttons(), (Texts { "mail+", "notes*" }));
    Settings::grouping.set(WindowGrouping::never);
    EXPECT_EQ(buttons(), (Texts { "Inbox", "Draft", "Shopping*" }));
    Settings::currentSpaceOnly.set(true);
    desktop_.close(3);
    settle();
    EXPECT_EQ(buttons(), (Texts { "Inbox", "Draft*" }));
}

TEST_F(BareDesktopTest, AClickGoesThereAndBackAndUnMinimises)
{
    click(0);
    EXPECT_EQ(desktop_.processes().frontmost(), desktop_.pid("mail"));
    click(0);
    EXPECT_EQ(desktop_.active(), 3u) << "back to the one before";

    desktop_.setMinimised(1, true);
    desktop_.setMinimised(2, true);
    settle();
    click(0);
    EXPECT_EQ(desktop_.processes().frontmost(), desktop_.pid("mail"));
    EXPECT_TRUE(desktop_.launched().empty()) << "nothing that runs is launched again";

    bar().mouseExited({});
    bar().updateHover(middle(0));
    advance(0.5);
    EXPECT_EQ(bar().tooltip().label().text(), "mail") << "where there are no pictures";
    EXPECT_FALSE(bar().preview().isShowing());
}

TEST_F(BareDesktopTest, AMenuListsTheWindowsAndQuits)
{
    const auto item = bar().appItems().front();
    const auto menu = BarMenus::itemMenu(item);
    const auto& entries = menu->itemArray();
    const auto windows = std::ranges::find(entries, "Show window", &NSMenuItem::title);
    ASSERT_NE(windows, entries.end());
    desktop_.setMinimised(2, true);
    windows->submenu()->performActionForItem(1);
    EXPECT_EQ(desktop_.active(), 2u);
    EXPECT_FALSE(desktop_.toplevel(2)->isMinimised);

    menu->performActionForItem(
        static_cast<std::size_t>(std::ranges::find(entries, "Quit", &NSMenuItem::title) - entries.begin()));
    settle();
    EXPECT_EQ(buttons(), (Texts { "notes*" }));
}

TEST_F(BareDesktopTest, ASearchFindsWindowsAndApplicationsAndHasTheKeyboard)
{
    Search::hits("inb").at(0).activate();
    settle();
    EXPECT_EQ(desktop_.active(), 1u);
    Search::hits("pai").at(0).activate();
    settle();
    EXPECT_EQ(desktop_.launched(), Texts { "paint" });
    bar().searchField()->becomeFirstResponder();
    EXPECT_EQ(desktop_.keyboardHolder(), bar().window()->widget());
    bar().endSearch();
    EXPECT_EQ(desktop_.keyboardHolder(), nullptr);
}

TEST_F(BareDesktopTest, ShowDesktopBringsBackWhatItTook)
{
    desktop_.setMinimised(2, true);
    ShowDesktop::toggle();
    advance(1);
    EXPECT_TRUE(desktop_.toplevel(1)->isMinimised && desktop_.toplevel(3)->isMinimised);
    ShowDesktop::forgetIfStale();
    ShowDesktop::toggle();
    advance(1);
    EXPECT_FALSE(desktop_.toplevel(1)->isMinimised);
    EXPECT_TRUE(desktop_.toplevel(2)->isMinimised) << "it was before";
    EXPECT_FALSE(desktop_.toplevel(3)->isMinimised);
}

TEST_F(BareDesktopTest, NothingSpinsOrLogsWithoutEnd)
{
    advance(60);
    const std::set<std::string> kinds(log_.begin(), log_.end());
    log_.clear();
    advance(60);
    EXPECT_LT(log_.size(), 200u);
    for (const std::string& line : log_)
        EXPECT_TRUE(kinds.contains(line)) << line;
    for (const std::uint32_t number : { 1, 2, 3 })
        EXPECT_FALSE(desktop_.toplevel(number)->isMinimised) << "the tamer leaves alone what it can't see";
}
