#include "ModelTest.h"

#include "appkit/NSWorkspace.h"
#include "bar/BarManager.h"
#include "bar/BarMenus.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "controls/Shortcuts.h"
#include "host/Badges.h"
#include "host/Capture.h"
#include "host/Keyboard.h"
#include "host/Pointer.h"
#include "model/AppHistory.h"
#include "model/Entries.h"
#include "search/Search.h"
#include "settings/Settings.h"
#include "tamer/WindowTamer.h"

#include <set>

namespace {

/// What is left of a desktop that tells of windows what a plain list of them tells: title, owner, and whether it is
/// active or minimised. There are no bounds, layers and spaces, and no badges, pointer, pictures and keys. Windows can
/// be activated, minimised and closed; that is all.
class BareDesktop final : public host::Desktop, host::Windows, host::Accessibility {
public:
    explicit BareDesktop(host::Desktop& whole)
        : whole_(whole)
    {
        whole_.windows().onChange = [this] {
            if (host::Windows::onChange)
                host::Windows::onChange();
        };
    }

    host::Displays& displays() override { return whole_.displays(); }
    host::Processes& processes() override { return whole_.processes(); }
    host::Applications& applications() override { return whole_.applications(); }
    host::Windows& windows() override { return *this; }
    host::Badges& badges() override { return badges_; }
    host::Accessibility& accessibility() override { return *this; }
    host::Pointer& pointer() override { return pointer_; }
    host::Keyboard& keyboard() override { return keyboard_; }
    host::Surfaces& surfaces() override { return whole_.surfaces(); }
    host::Capture& capture() override { return capture_; }
    host::Session& session() override { return whole_.session(); }

private:
    using Attribute = host::Attribute;

    static std::shared_ptr<const host::Window> bared(const std::shared_ptr<const host::Window>& window)
    {
        return window ? std::make_shared<const host::Window>(
                   host::Window { window->number, window->owner, window->title, 0, {}, {}, window->isOnScreen })
                      : nullptr;
    }
    static List bared(List windows)
    {
        for (auto& each : windows)
            each = bared(each);
        return windows;
    }

    List all() override { return bared(whole_.windows().all()); }
    List onScreen() override { return bared(whole_.windows().onScreen()); }
    std::shared_ptr<const host::Window> find(std::uint32_t number) override
    {
        return bared(whole_.windows().find(number));
    }

    bool isTrusted(bool) override { return true; }
    AXError read(const host::ElementID& of, Attribute what, double timeout, host::AttributeValue& value) override
    {
        const bool isTold = what == Attribute::windows || what == Attribute::focusedWindow || what == Attribute::title
            || what == Attribute::minimized;
        return isTold ? whole_.accessibility().read(of, what, timeout, value) : kAXErrorAttributeUnsupported;
    }
    AXError write(const host::ElementID& of, Attribute what, double timeout, const host::AttributeValue& value) override
    {
        const bool canBe = what == Attribute::minimized || what == Attribute::main || what == Attribute::frontmost;
        return canBe ? whole_.accessibility().write(of, what, timeout, value) : kAXErrorAttributeUnsupported;
    }
    AXError perform(const host::ElementID& of, host::Action action, double timeout) override
    {
        return whole_.accessibility().perform(of, action, timeout);
    }

    host::Desktop& whole_;
    host::Badges badges_;
    host::Pointer pointer_;
    host::Keyboard keyboard_;
    host::Capture capture_;
};

/// The whole program on such a desktop: "mail" with two windows, and "notes" with one, in front.
class BareDesktopTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        bare_ = std::make_unique<BareDesktop>(desktop());
        host::Desktop::setCurrent(bare_.get());
        NSWorkspace::sharedWorkspace().followDesktop();
        AppHistory::start();
        mail_ = run("mail");
        inbox_ = openWindow(mail_, {}, "Inbox");
        draft_ = openWindow(mail_, {}, "Draft");
        world().activate(mail_);
        settle();
        const pid_t notes = run("notes");
        shopping_ = openWindow(notes, {}, "Shopping");
        world().activate(notes);
        manager_ = std::make_shared<BarManager>();
        manager_->start();
        WindowTamer::start();
        Shortcuts::start();
        settle();
    }

    void TearDown() override
    {
        manager_.reset();
        ModelTest::TearDown();
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

    bool isMinimised(std::uint32_t window) { return world().window(window)->isMinimised; }

    std::unique_ptr<BareDesktop> bare_;
    std::shared_ptr<BarManager> manager_;
    pid_t mail_ = 0;
    std::uint32_t inbox_ = 0, draft_ = 0, shopping_ = 0;
};

}

TEST_F(BareDesktopTest, ButtonsStandForApplicationsOrTheirWindows)
{
    EXPECT_EQ(buttons(), (Texts { "mail+", "notes*" }));
    Settings::grouping.set(WindowGrouping::never);
    EXPECT_EQ(buttons(), (Texts { "Inbox", "Draft", "Shopping*" }));
    Settings::currentSpaceOnly.set(true);
    world().close(shopping_);
    world().focus(draft_);
    EXPECT_EQ(buttons(), (Texts { "Inbox", "Draft*" }));
}

TEST_F(BareDesktopTest, AClickGoesThereAndBackAndUnMinimisesAndTheMenuQuits)
{
    const std::size_t running = world().processes().size();
    click(0);
    EXPECT_EQ(world().frontmost(), mail_);
    click(0);
    EXPECT_EQ(world().window(shopping_)->owner, world().frontmost()) << "back to the one before";
    for (const std::uint32_t window : { inbox_, draft_ })
        world().setMinimised(window, true);
    click(0);
    EXPECT_EQ(world().frontmost(), mail_);
    EXPECT_FALSE(isMinimised(inbox_) && isMinimised(draft_));
    EXPECT_EQ(world().processes().size(), running) << "nothing that runs is launched again";

    bar().mouseExited({});
    bar().updateHover(middle(0));
    advance(0.5);
    EXPECT_EQ(bar().tooltip().label().text(), "mail") << "where there are no pictures";
    EXPECT_FALSE(bar().preview().isShowing());

    const auto menu = BarMenus::itemMenu(bar().appItems().front());
    const auto& entries = menu->itemArray();
    const auto windows = std::ranges::find(entries, "Show window", &NSMenuItem::title);
    ASSERT_NE(windows, entries.end());
    EXPECT_EQ(windows->submenu()->itemArray().size(), 2u);
    const auto quit = std::ranges::find(entries, "Quit", &NSMenuItem::title);
    menu->performActionForItem(static_cast<std::size_t>(quit - entries.begin()));
    settle();
    EXPECT_EQ(buttons(), (Texts { "notes*" }));
}

TEST_F(BareDesktopTest, ASearchFindsAndShowDesktopBringsBackAndNothingSpinsOrLogsWithoutEnd)
{
    world().setMinimised(inbox_, true);
    settle();
    Search::hits("inb").at(0).activate();
    settle();
    EXPECT_EQ(world().focusedWindow(mail_)->number, inbox_);
    world().setMinimised(draft_, true);
    for (const bool isShown : { true, false }) {
        ShowDesktop::toggle();
        advance(1);
        EXPECT_EQ(world().process(mail_)->record->isHidden, isShown);
    }
    EXPECT_TRUE(isMinimised(draft_)) << "it was before";

    advance(60);
    const std::set<std::string> kinds(log_.begin(), log_.end());
    log_.clear();
    advance(60);
    EXPECT_LT(log_.size(), 200u);
    for (const std::string& line : log_)
        EXPECT_TRUE(kinds.contains(line)) << line;
    EXPECT_EQ(count("AXPosition") + count("AXSize"), 0u) << "the tamer leaves alone what it can't see";
}
