#include "contract/X11Fixture.h"

#include <QProcess>

#include <unistd.h>

#include <atomic>
#include <thread>

namespace {

using host::ElementID;

TEST_F(X11, AWindowWhosePropertiesAreAllWrongIsListed)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "nobody but its class says that it is an application's window";
    const auto program = start("wrong",
        {
            "_NET_WM_NAME CARDINAL 1 2 3",
            "WM_NAME WINDOW 7",
            "WM_CLASS CARDINAL 1",
            "_NET_WM_PID STRING me",
            "_NET_WM_WINDOW_TYPE STRING window",
            "_NET_WM_STRUT_PARTIAL CARDINAL ab",
            "_NET_WM_STRUT CARDINAL 1",
            "_GTK_FRAME_EXTENTS CARDINAL 4000000000 1 1 1",
            "WM_TRANSIENT_FOR STRING nobody",
            "WM_HINTS STRING hints",
            "_NET_WM_ICON CARDINAL 4294967295 4294967295 1",
        });

    EXPECT_EQ(title(program.window), "");
    EXPECT_EQ(listed(program.window).layer, 0);
    EXPECT_GE(bounds(program.window).width, 500);
    const auto process = processes().find(listed(program.window).owner);
    ASSERT_TRUE(process);
    EXPECT_TRUE(process->localizedName);
    EXPECT_TRUE(process->icon);
    EXPECT_EQ(displays().all().front().visibleFrame, displays().all().front().frame);
}

TEST_F(X11, TitlesAreCutToWholeCharactersAndDecodedAndAFloodOfThemIsToldToNobody)
{
    const auto program = start("titles");
    const struct {
        const char* name;
        std::string value;
        std::string title;
    } rows[] = {
        { "long", std::string(100'000, 'x'), std::string(4096, 'x') },
        { "no UTF-8", "a\xFF\xC3(\xE2\x82\xACz", "a\uFFFD\uFFFD(\u20ACz" },
        { "empty, so the old name", "", "caf\u00E9" },
    };
    under_->setProperty(program.window, "WM_NAME STRING caf\xE9");
    for (const auto& row : rows) {
        under_->setTitle(program.window, row.value);
        EXPECT_TRUE(settle([&] { return title(program.window) == row.title; }))
            << row.name << ": " << title(program.window).substr(0, 40);
    }
    hear();
    int changes = 0;
    windows().onChange = [&] { ++changes; };
    for (int number = 1; number <= 100; ++number)
        under_->setTitle(program.window, "title " + std::to_string(number));
    EXPECT_TRUE(settle([&] { return title(program.window) == "title 100"; }));
    EXPECT_EQ(changes, 0);
}

TEST_F(X11, AbsurdPlacesAndSizesAreListed)
{
    for (const CGRect& frame : { CGRect { 0, 0, 1, 1 }, CGRect { -30000, -30000, 30000, 1 },
             CGRect { 32000, 32000, 20000, 2 }, CGRect { 100, 100, 2, 20000 } }) {
        const auto program = start("absurd", {}, frame);
        EXPECT_EQ(
            write(element(program.pid, program.window), Attribute::position, CGPoint { 1e12, -1e12 }), kAXErrorSuccess);
        EXPECT_EQ(write(element(program.pid, program.window), Attribute::size, CGSize { -5, 0 }), kAXErrorSuccess);
        EXPECT_TRUE(displays().main());
        EXPECT_TRUE(isListed(program.window));
        stop(program);
    }
}

TEST_F(X11, WhatDiesBeforeItIsUsedIsPassedOverAndNobodyElseIsKilled)
{
    const auto keeper = start("keeper");
    const auto program = start("dying");
    const auto window = element(program.pid, program.window);
    under_->closeWindow(program.window);

    // The desktop hasn't heard of it yet; the server has.
    write(window, Attribute::position, CGPoint { 10, 10 });
    write(window, Attribute::main, true);
    write(window, Attribute::minimized, true);
    raise(window);
    processes().hide(program.pid);
    processes().activate(program.pid);

    EXPECT_TRUE(settle([&] { return !isListed(program.window); }));
    EXPECT_EQ(write(window, Attribute::main, true), kAXErrorInvalidUIElement);
    EXPECT_EQ(raise(window), kAXErrorInvalidUIElement);

    EXPECT_TRUE(processes().forceTerminate(keeper.pid));
    EXPECT_TRUE(settle([&] { return !processes().find(keeper.pid) && !isListed(keeper.window); }));
    EXPECT_FALSE(processes().forceTerminate(keeper.pid));
    EXPECT_FALSE(processes().forceTerminate(getpid()));
    // The numbers of stand-ins are negative: a signal to one would go to a group of processes.
    for (const auto& process : processes().running()) {
        if (process->pid > 0)
            continue;
        EXPECT_FALSE(processes().terminate(process->pid));
        EXPECT_FALSE(processes().hide(process->pid));
        EXPECT_FALSE(processes().forceTerminate(process->pid));
    }
}

TEST_F(X11, AnotherThreadMayAskWhileWindowsComeAndGo)
{
    const auto keeper = start("keeper");
    std::atomic<bool> isOver = false;
    std::thread asker([&] {
        // The window manager is to be left time for its own work.
        int requests = 200;
        while (!isOver) {
            host::AttributeValue value;
            accessibility().read(application(keeper.pid), Attribute::windows, 0.3, value);
            const auto* elements = std::get_if<std::vector<ElementID>>(&value);
            for (const ElementID& window : elements ? *elements : std::vector<ElementID> {}) {
                host::AttributeValue part;
                accessibility().read(window, Attribute::title, 0.3, part);
                accessibility().read(window, Attribute::size, 0.3, part);
                if (requests-- > 0)
                    accessibility().write(window, Attribute::position, 0.3, CGPoint { 50, 60 });
            }
        }
    });
    for (int i = 0; i < 20; ++i) {
        const auto window = under_->openWindow(keeper.pid, "passing " + std::to_string(i), { 100, 100, 300, 200 });
        EXPECT_TRUE(settle([&] { return isListed(window); }));
        under_->closeWindow(window);
        EXPECT_TRUE(settle([&] { return !isListed(window); }));
    }
    isOver = true;
    asker.join();
    EXPECT_TRUE(isListed(keeper.window));
}

/// With a server that can't tell whose a window is, what the window says counts, if it was said on this machine.
TEST_F(X11, WithoutTheServersWordAWindowNamesItsProcess)
{
    if (under_->ask(xcb_query_extension_reply, xcb_query_extension, 10, "X-Resource")->present != 0)
        GTEST_SKIP() << "the server tells";
    char host[256] = {};
    gethostname(host, sizeof host - 1);

    const auto here = start("here", { std::string("WM_CLIENT_MACHINE STRING ") + host });
    EXPECT_EQ(listed(here.window).owner, here.pid);

    const auto there = start("there", { "WM_CLIENT_MACHINE STRING elsewhere.invalid" });
    const auto pid = listed(there.window).owner;
    EXPECT_LT(pid, 0);
    EXPECT_EQ(processes().find(pid)->localizedName, "there");
    const auto second = under_->openWindow(there.pid, "second", { 50, 50, 300, 200 });
    under_->setProperty(second, "WM_CLIENT_MACHINE STRING elsewhere.invalid");
    EXPECT_TRUE(settle([&] { return isListed(second) && listed(second).owner == pid; }));

    EXPECT_TRUE(processes().forceTerminate(pid));
    EXPECT_TRUE(settle([&] { return !processes().find(pid); }));
    EXPECT_TRUE(isListed(here.window));
}

// Without a window manager, and when one comes and goes

TEST_F(X11, WithoutAWindowManagerTheServerIsAskedUntilOneComes)
{
    if (hasWindowManager())
        GTEST_SKIP() << "there is one";
    const auto back = start("back");
    const auto front = start("front");
    const auto window = element(back.pid, back.window);
    EXPECT_EQ(windows().activeSpace(), 1u);
    EXPECT_EQ(spaces(back.window).size(), 1u);
    EXPECT_EQ(bounds(back.window), (CGRect { 200, 150, 500, 400 }));

    EXPECT_TRUE(processes().activate(back.pid));
    EXPECT_TRUE(settle([&] { return processes().frontmost() == back.pid; }));
    EXPECT_EQ(windows().onScreen().front()->number, back.window);

    write(window, Attribute::position, CGPoint { 20, 30 });
    write(window, Attribute::size, CGSize { 640, 480 });
    EXPECT_TRUE(settle([&] { return bounds(back.window) == CGRect { 20, 30, 640, 480 }; }));

    processes().hide(back.pid);
    EXPECT_TRUE(settle([&] { return processes().find(back.pid)->isHidden; }));
    EXPECT_EQ(windows().onScreen().size(), 1u);
    processes().unhide(back.pid);
    EXPECT_TRUE(settle([&] { return windows().onScreen().size() == 2; }));

    EXPECT_TRUE(processes().terminate(back.pid));
    EXPECT_TRUE(settle([&] { return !processes().find(back.pid); }));

    const auto spaceCount = [&] { return windows().displaySpaces().front().spaces.size(); };
    ASSERT_EQ(spaceCount(), 1u);
    const CGRect bare = bounds(front.window);
    QProcess manager;
    // It looks for its theme among the installed ones.
    manager.start("env", { "-u", "XDG_DATA_DIRS", "openbox" });
    EXPECT_TRUE(settle([&] { return spaceCount() > 1 && isListed(front.window); }));
    EXPECT_TRUE(settle([&] { return bounds(front.window).height > bare.height; })) << "decorated now";

    manager.terminate();
    manager.waitForFinished();
    EXPECT_TRUE(settle([&] { return spaceCount() == 1 && isListed(front.window); }));
    EXPECT_TRUE(settle([&] { return bounds(front.window).size() == bare.size(); }));
}

}
