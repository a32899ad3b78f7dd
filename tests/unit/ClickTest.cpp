#include "ModelTest.h"

#include "appkit/NSWorkspace.h"
#include "foundation/NSProcessInfo.h"
#include "model/AppHistory.h"
#include "model/Click.h"

namespace {

/// The application that was in front before, with a window, and the one that is clicked.
class ClickTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        NSWorkspace::sharedWorkspace().followDesktop();
        former_ = run("Former");
        openWindow(former_);
        app_ = run("App");
        bringToFront(former_);
        AppHistory::start();
    }

    void bringToFront(pid_t pid)
    {
        world().activate(pid);
        settle();
        WindowIndex::invalidate();
    }

    void click(const BarItem& item)
    {
        DockModel::handleClick(item);
        advance(3);
    }

    pid_t former_ = 0;
    pid_t app_ = 0;
};

}

TEST_F(ClickTest, WhatOneClickDoesInEachStateOfTheApplication)
{
    enum class Window { none, tiny, visible, minimised };
    const struct {
        const char* what;
        bool isFront;
        bool isHidden;
        Window window;
        bool showsDesktop;
        const char* log;
        bool endsInFront;
        std::size_t raised;
    } cases[] {
        { "in the background", false, false, Window::visible, false, "activate: ", true, 1 },
        { "in the background, minimised", false, false, Window::minimised, false, "activate: ", true, 1 },
        { "hidden", false, true, Window::visible, false, "activate: ", true, 1 },
        { "in front", true, false, Window::visible, false, "back: ", false, 0 },
        { "in front, minimised", true, false, Window::minimised, false, "back: ", false, 0 },
        { "in front, while the desktop shows", true, false, Window::visible, true, "activate: ", true, 1 },
        { "in front without a window", true, false, Window::none, false, "activate: ", true, 0 },
        { "in front with windows that don't count", true, false, Window::tiny, false, "activate: ", true, 0 },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const pid_t pid = run(test.what);
        std::uint32_t window = 0;
        if (test.window != Window::none) {
            const double side = test.window == Window::tiny ? 100 : 600;
            window = openWindow(pid, { 0, 0, side, side });
            world().setMinimised(window, test.window == Window::minimised);
        }
        bringToFront(former_);
        if (test.isFront)
            bringToFront(pid);
        if (test.showsDesktop) {
            ShowDesktop::toggle();
            advance(1);
            bringToFront(pid);
        }
        if (test.isHidden)
            world().hide(pid);
        calls().clear();
        log_.clear();

        click(itemOf(test.what, pid));
        EXPECT_EQ(logged(test.log).size(), 1u);
        EXPECT_EQ(world().frontmost() == pid, test.endsInFront);
        EXPECT_FALSE(world().process(pid)->record->isHidden);
        EXPECT_EQ(count("AXRaise", pid), test.raised);
        EXPECT_EQ(count("open"), test.endsInFront && !test.raised ? 1u : 0u);
        EXPECT_FALSE(test.raised && world().window(window)->isMinimised);

        if (test.showsDesktop)
            ShowDesktop::toggle();
        world().quit(pid);
        advance(1);
    }
}

TEST_F(ClickTest, TheFormerApplicationIsTheOneBeforeThisOneAndNeverTheProgram)
{
    log_.clear();
    EXPECT_FALSE(AppHistory::previous());
    bringToFront(app_);
    EXPECT_EQ(AppHistory::previous(), former_);
    for (const pid_t next : { app_, former_ }) {
        bringToFront(NSProcessInfo::processIdentifier());
        bringToFront(next);
        EXPECT_EQ(AppHistory::previous(), next == app_ ? former_ : app_);
    }
    EXPECT_EQ(logged("history: "),
        (Texts { "history: current=App previous=" + std::to_string(former_),
            "history: current=Former previous=" + std::to_string(app_) }));

    for (const char* identifier : { "org.Former", "org.App", "com.apple.finder" })
        world().quit(world().processNamed(identifier)->pid());
    settle();
    ASSERT_FALSE(world().frontmost()) << "nothing is in front at the start";
    AppHistory::start();
    bringToFront(run("Next"));
    EXPECT_FALSE(AppHistory::previous());
}

TEST_F(ClickTest, WhatIsNotRunningIsLaunchedWhereThereIsSomethingToLaunch)
{
    install("Notes");
    click(itemOf("Notes", std::nullopt));
    ASSERT_TRUE(world().processNamed("org.Notes"));
    EXPECT_EQ(world().frontmost(), world().processNamed("org.Notes")->pid());
    EXPECT_EQ(logged("launch: "), Texts { "launch: Notes at /Applications/Notes.app" });

    world().quit(app_);
    click(itemOf("App", app_));
    EXPECT_TRUE(world().processNamed("org.App")) << "the process of an item that is out of date";
    calls().clear();
    click(BarItem());
    EXPECT_EQ(count("open"), 0u);
}

TEST_F(ClickTest, AWindowsButtonRaisesItsWindowEvenInFront)
{
    const auto window = openWindow(app_);
    openWindow(app_);
    bringToFront(app_);
    BarItem item = itemOf("Letter", app_);
    item.windowID = window;
    for (int round = 0; round < 2; ++round) {
        click(item);
        EXPECT_EQ(world().frontmost(), app_);
        EXPECT_EQ(world().focusedWindow(app_)->number, window);
    }
    EXPECT_EQ(logged("click: "), Texts(2, "click: window " + std::to_string(window) + " of Letter"));
    EXPECT_EQ(count("activate"), 0u);
}
