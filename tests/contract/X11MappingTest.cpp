#include "contract/X11Fixture.h"

#include "base/IconSource.h"
#include "base/Value.h"

#include <QWidget>

#include <filesystem>

namespace {

using host::ElementID;

std::string description(const CGRect& rect)
{
    return description(CGRectCreateDictionaryRepresentation(rect));
}

// Windows

TEST_F(X11, LayerAndPolicyFollowTypeAndState)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "states are the window manager's";
    constexpr int desktopLayers = -1'000'000;
    constexpr auto regular = host::ActivationPolicy::regular;
    constexpr auto accessory = host::ActivationPolicy::accessory;
    const struct {
        const char* type;
        const char* state;
        int layer;
        host::ActivationPolicy policy;
    } rows[] = {
        { "_NET_WM_WINDOW_TYPE_NORMAL", "", 0, regular },
        { "_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_STATE_ABOVE", 3, regular },
        { "_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_STATE_SKIP_TASKBAR", 0, accessory },
        { "_NET_WM_WINDOW_TYPE_DIALOG", "", 0, regular },
        { "_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_STATE_ABOVE", 8, regular },
        { "_NET_WM_WINDOW_TYPE_UTILITY", "", 3, accessory },
        { "_NET_WM_WINDOW_TYPE_NOTIFICATION", "", 8, accessory },
        { "_TEST_TYPE _NET_WM_WINDOW_TYPE_DOCK", "", 20, accessory },
        { "_NET_WM_WINDOW_TYPE_DESKTOP", "", desktopLayers, accessory },
    };
    for (const auto& row : rows) {
        const auto program = start("layers",
            { std::string("_NET_WM_WINDOW_TYPE ATOM ") + row.type, std::string("_NET_WM_STATE ATOM ") + row.state });
        const auto layer = [&] { return listed(program.window).layer; };
        EXPECT_TRUE(settle([&] {
            return (row.layer == desktopLayers ? layer() < desktopLayers : layer() == row.layer)
                && processes().find(program.pid)->policy == row.policy;
        })) << row.type
            << ' ' << row.state << ": " << layer();
        stop(program);
    }
    EXPECT_EQ(processes().find(getpid())->policy, accessory);
}

TEST_F(X11, TheShadowsThatAClientDrawsAreNoPartOfItsBounds)
{
    const auto program = start("shadows");
    const CGRect plain = bounds(program.window);
    under_->setProperty(program.window, "_GTK_FRAME_EXTENTS CARDINAL 10 20 30 40");

    const CGRect visible { plain.x + 10, plain.y + 30, plain.width - 30, plain.height - 70 };
    EXPECT_TRUE(settle([&] { return bounds(program.window) == visible; }));

    EXPECT_EQ(write(element(program.pid, program.window), Attribute::position, CGPoint { 300, 200 }), kAXErrorSuccess);
    EXPECT_EQ(write(element(program.pid, program.window), Attribute::size, CGSize { 350, 300 }), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return bounds(program.window) == CGRect { 300, 200, 350, 300 }; }));
}

TEST_F(X11, AUserWhoBringsBackOneWindowUnhidesTheApplication)
{
    const auto program = start("hider");
    const auto second = under_->openWindow(program.pid, "second", { 700, 150, 400, 300 });
    ASSERT_TRUE(settle([&] { return isListed(second); }));
    processes().hide(program.pid);
    ASSERT_TRUE(settle([&] { return processes().find(program.pid)->isHidden; }));

    if (hasWindowManager())
        under_->bringForward(second);
    else
        under_->show(second);

    EXPECT_TRUE(settle([&] { return !processes().find(program.pid)->isHidden; }));
    EXPECT_EQ(read<bool>(element(program.pid, program.window), Attribute::minimized), true);
    EXPECT_FALSE(processes().unhide(program.pid));
}

TEST_F(X11, WhatHidingTookIsGivenBackWhateverElseTheProgramShows)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "nobody brings a window to the front";
    const auto program = start("taker");
    // Of a window's functions, minimising is missing.
    const auto fixed = under_->createWindow(program.pid, { 700, 150, 300, 200 });
    under_->setProperty(fixed, "_MOTIF_WM_HINTS _MOTIF_WM_HINTS 1 38 0 0 0");
    under_->show(fixed);
    const auto other = start("other");
    under_->focus(program.window);
    ASSERT_TRUE(settle([&] { return isListed(fixed) && processes().frontmost() == program.pid; }));
    const auto isHidden
        = [&](bool hidden) { return [&, hidden] { return processes().find(program.pid)->isHidden == hidden; }; };
    const auto isAway = [&] { return read<bool>(element(program.pid, program.window), Attribute::minimized) == true; };
    processes().hide(program.pid);
    processes().hide(other.pid);
    ASSERT_TRUE(settle(isHidden(true)));
    const auto late = under_->openWindow(program.pid, "late", { 500, 400, 300, 200 });
    ASSERT_TRUE(settle([&] { return isListed(late) && processes().find(other.pid)->isHidden; }));
    EXPECT_TRUE(isHidden(true)() && isAway());

    processes().unhide(program.pid);
    processes().unhide(other.pid);
    EXPECT_TRUE(settle([&] { return isHidden(false)() && !isAway() && processes().frontmost() == program.pid; }));
    EXPECT_TRUE(settle([&] { return isInFrontOf(program.window, other.window); }));
}

TEST_F(X11, AnUrgentWindowIsPassedOverOnceItWasActive)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "nobody tells which window is active";
    const auto urgent = start("urgent");
    const auto other = start("other");
    under_->focus(other.window);
    ASSERT_TRUE(settle([&] { return processes().frontmost() == other.pid; }));
    const std::string hints = "WM_HINTS WM_HINTS 256 0 0 0 0 0 0 0 0";
    under_->setProperty(urgent.window, hints);
    EXPECT_TRUE(settle([&] { return listed(urgent.window).demandsAttention; }));
    under_->focus(urgent.window);
    EXPECT_TRUE(settle([&] { return !listed(urgent.window).demandsAttention; }));
    under_->focus(other.window);
    ASSERT_TRUE(settle([&] { return processes().frontmost() == other.pid; }));
    EXPECT_FALSE(listed(urgent.window).demandsAttention) << "its hint still stands";

    under_->setProperty(urgent.window, "WM_HINTS WM_HINTS 0 0 0 0 0 0 0 0 0");
    under_->setTitle(urgent.window, "calm");
    ASSERT_TRUE(settle([&] { return title(urgent.window) == "calm"; }));
    // Some window managers make a state of the hint, and not all take it away with it.
    const xcb_atom_t demands = under_->atom("_NET_WM_STATE_DEMANDS_ATTENTION");
    if (std::ranges::count(numbers(urgent.window, "_NET_WM_STATE"), demands))
        GTEST_SKIP() << "the window manager still has it demand attention";
    under_->setProperty(urgent.window, hints);
    EXPECT_TRUE(settle([&] { return listed(urgent.window).demandsAttention; })) << "and says so anew";
}

// Who a program is

TEST_F(X11, ADesktopEntryGivesIdentifierNameBundleAndIcon)
{
    writeAtHome("data/icons/hicolor/index.theme",
        "[Icon Theme]\nDirectories=16x16/apps,128x128/apps\n"
        "[16x16/apps]\nSize=16\nType=Fixed\nContext=Applications\n"
        "[128x128/apps]\nSize=128\nType=Fixed\nContext=Applications\n");
    writeAtHome("data/icons/hicolor/16x16/apps/mail-icon.png", "16");
    writeAtHome("data/icons/hicolor/128x128/apps/mail-icon.png", "128");
    writeAtHome("data/pixmaps/old-icon.png", "48");
    TestEntries entries;
    entries.write("org.test.Mail",
        "Name=Test Mail\nName[de]=Testpost\nStartupWMClass=testmail-main\nIcon=mail-icon\nExec=mail\n");
    entries.write("testnotes", "Name=Notes/Slips\nIcon=no-such-icon\nExec=notes %F\n");
    entries.write("org.test.Painter", "Name=Painter\nIcon=old-icon\nExec=painter\n");
    entries.write("wrapped", "Name=By Program\nExec=env A=b /opt/x/window_client %u\n");
    entries.write("terminal", "Name=In Terminal\nTerminal=true\nExec=window_client\n");
    entries.write("zz-second", "Name=Painter\nStartupWMClass=second painter\nExec=p2\n");

    const struct {
        const char* className;
        const char* identifier;
        const char* name;
        const char* path;
        const char* icon;
    } rows[] = {
        { "TestMail-Main", "org.test.Mail", "Test Mail", "/Applications/Test Mail.app",
            "data/icons/hicolor/128x128/apps/mail-icon.png" },
        { "TestNotes", "testnotes", "Notes/Slips", "/Applications/Notes-Slips.app", nullptr },
        { "painter", "org.test.Painter", "Painter", "/Applications/Painter.app", "data/pixmaps/old-icon.png" },
        { "second painter", "zz-second", "Painter", "/Applications/Painter (zz-second).app", nullptr },
        { "NoClassThatAnEntryHas", "wrapped", "By Program", "/Applications/By Program.app", nullptr },
    };
    for (const auto& row : rows) {
        const auto program = start(row.className);
        const auto process = processes().find(program.pid);
        ASSERT_TRUE(process);
        EXPECT_EQ(process->bundleIdentifier, row.identifier);
        EXPECT_EQ(process->localizedName, row.name);
        EXPECT_EQ(process->bundlePath, row.path);
        EXPECT_EQ(applications().identifier(row.path), row.identifier);
        EXPECT_EQ(applications().displayName(row.path), row.name);
        ASSERT_TRUE(process->icon);
        const auto* file = std::get_if<IconSource::File>(&process->icon->content);
        EXPECT_EQ(file ? file->path : "", row.icon ? temporaryHome() + '/' + row.icon : "");
        if (row.icon) {
            EXPECT_EQ(process->icon, applications().icon(row.path)) << "one picture is one object";
        }
        stop(program);
    }
}

TEST_F(X11, WithoutAnEntryTheWindowsOwnClassAndIconStand)
{
    const auto program = start("Lonely", { "_NET_WM_ICON CARDINAL 2 1 4278190335 4294901760 1 1 16777215 99 99 1" });
    const auto process = processes().find(program.pid);
    ASSERT_TRUE(process);
    EXPECT_EQ(process->bundleIdentifier, "Lonely");
    EXPECT_EQ(process->localizedName, "Lonely");
    EXPECT_FALSE(process->bundlePath);
    const auto* pictures = std::get_if<std::vector<IconSource::Pixels>>(&process->icon->content);
    ASSERT_TRUE(pictures);
    ASSERT_EQ(pictures->size(), 2u) << "the cut-off third one is left out";
    EXPECT_EQ(pictures->front().argb, (std::vector<std::uint32_t> { 0xFF0000FF, 0xFFFF0000 }));
}

TEST_F(X11, TheFinderIsTheApplicationThatOpensFoldersAndTheDockHasTheListOfApplications)
{
    EXPECT_EQ(session().preferencesFolder(), temporaryHome() + "/config/vantry/Preferences");
    const std::string dock = contentsOf(session().preferencesFolder() + "/com.apple.dock.plist");
    EXPECT_NE(dock.find("<string>file:///System/Applications/Apps.app/</string>"), dock.npos);
    EXPECT_EQ(applications().displayName("/System/Applications/Apps.app"), "Apps");
    EXPECT_TRUE(std::holds_alternative<IconSource::Svg>(applications().icon("/System/Applications/Apps.app")->content));

    const auto finder = processes().running().front();
    EXPECT_EQ(finder->bundleIdentifier, "com.apple.finder");
    EXPECT_EQ(finder->policy, host::ActivationPolicy::regular);
    EXPECT_EQ(finder->localizedName, "Test Files");
    EXPECT_EQ(applications().identifier(*finder->bundlePath), "com.apple.finder");

    const auto elements = read<std::vector<ElementID>>(application(finder->pid), Attribute::windows);
    ASSERT_TRUE(elements);
    ASSERT_EQ(elements->size(), 1u);
    EXPECT_EQ(elements->front().kind, ElementID::Kind::other);
    EXPECT_FALSE(read<CGSize>(elements->front(), Attribute::size));

    const auto program = start("testfiles");
    EXPECT_TRUE(settle([&] { return processes().running().front()->pid == program.pid; }));
    EXPECT_EQ(processes().running().front()->bundleIdentifier, "com.apple.finder");
    EXPECT_FALSE(processes().find(finder->pid));

    stop(program);
    EXPECT_TRUE(settle([&] { return processes().running().front()->pid == finder->pid; }));

    const std::string log = temporaryHome() + "/opened";
    const struct {
        std::function<bool()> open;
        std::string folder;
    } rows[] = {
        { [&] { return applications().open(*finder->bundlePath); }, temporaryHome() },
        { [&] { return applications().openURL("file://" + temporaryHome() + "/.Trash/"); },
            temporaryHome() + "/data/Trash/files" },
    };
    for (const auto& row : rows) {
        std::filesystem::remove(log);
        EXPECT_TRUE(row.open());
        EXPECT_TRUE(settle([&] { return contentsOf(log) == row.folder + "\n"; })) << row.folder;
    }
    EXPECT_EQ(session().locate(temporaryHome() + "/.Trash/a"), temporaryHome() + "/data/Trash/files/a");
    EXPECT_EQ(session().locate("/elsewhere"), "/elsewhere");
    EXPECT_FALSE(applications().openURL("no-such-scheme:there"));
    EXPECT_FALSE(applications().open("/Applications/No Such Thing.app"));
}

// Displays and panels

TEST_F(X11, AMaximisedWindowCanBePlaced)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "nobody maximises";
    const auto program
        = start("maximised", { "_NET_WM_STATE ATOM _NET_WM_STATE_MAXIMIZED_VERT _NET_WM_STATE_MAXIMIZED_HORZ" });
    ASSERT_TRUE(settle([&] { return bounds(program.window).width >= displays().all().front().frame.width; }));

    // The first request ends the maximised state, and with it goes its decoration; who wants it exact asks again.
    const CGRect goal { 100, 120, 640, 480 };
    EXPECT_TRUE(settle([&] {
        write(element(program.pid, program.window), Attribute::size, goal.size());
        write(element(program.pid, program.window), Attribute::position, goal.origin());
        return bounds(program.window) == goal;
    })) << description(bounds(program.window));
}

TEST_F(X11, PointerMovementIsToldWhileWatchedWhereItIsOfConcern)
{
    const CGRect frame = displays().all().front().frame;
    auto& pointer = under_->desktop().pointer();
    int moves = 0;
    pointer.onMove = [&](bool) { ++moves; };
    QWidget panel;
    surfaces().adopt(panel, { .level = 102 }, { 300, 300, 200, 100 });
    surfaces().orderFront(panel);
    const int panelTop = static_cast<int>(frame.height) - 400;
    const auto move = [&](int x, int y) {
        const int before = moves;
        under_->fakeInput(XCB_MOTION_NOTIFY, 0, x, y);
        EXPECT_TRUE(settle([&] { return pointer.location() == CGPoint { double(x), frame.height - y - 1 }; }));
        // The events of a movement come no later than the answer to where the pointer is.
        settle([&, turns = 0]() mutable { return moves != before || ++turns > 20; });
        return moves - before;
    };
    const auto watch = [&](bool on) {
        ASSERT_TRUE(pointer.watch(on));
        // An answer means that the server has taken that up before what comes on our own connection.
        pointer.location();
    };
    ASSERT_TRUE(settle([&] { return panel.isVisible(); }));
    EXPECT_EQ(move(100, 100), 0) << "not watched yet";
    watch(true);
    EXPECT_GT(move(110, 110), 0);
    EXPECT_GT(move(320, panelTop + 20), 0) << "over our own panel";
    under_->fakeInput(XCB_BUTTON_PRESS, 1);
    EXPECT_EQ(move(330, panelTop + 30), 0) << "over our own panel with a button held down";
    EXPECT_GT(move(110, 110), 0) << "dragged off it";
    under_->fakeInput(XCB_BUTTON_RELEASE, 1);

    const auto cover = under_->createWindow(under_->startProgram("cover"), { 250, double(panelTop - 50), 300, 200 });
    const std::uint32_t isOverrideRedirect = 1;
    xcb_change_window_attributes(under_->connection(), cover, XCB_CW_OVERRIDE_REDIRECT, &isOverrideRedirect);
    under_->show(cover);
    EXPECT_GT(move(260, panelTop - 40), 0) << "over another's window";
    EXPECT_EQ(move(320, panelTop + 20), 0) << "where it covers our panel";

    watch(false);
    EXPECT_EQ(move(110, 110), 0);
    pointer.onMove = nullptr;
    surfaces().release(panel);
}

TEST_F(X11, AFileManagerThatAWrapperStartsIsKnownByItsWindows)
{
    // The application that opens folders runs a script: it is whichever file manager shows.
    TestEntries entries;
    entries.write("t-manager",
        "Name=Test Manager\nStartupWMClass=test-manager\nExec=m\nCategories=System;FileManager;\n"
        "MimeType=inode/directory;\n");
    entries.write("t-editor",
        "Name=Test Editor\nStartupWMClass=test-editor\nExec=e\nCategories=Editor;\nMimeType=inode/directory;\n");
    const auto editor = start("test-editor");
    EXPECT_EQ(processes().find(editor.pid)->bundleIdentifier, "t-editor");
    EXPECT_LT(processes().running().front()->pid, 0) << "what stands for it";
    EXPECT_TRUE(processes().running().front()->isHidden) << "there is nothing of it to clear away";
    const auto manager = start("test-manager");
    EXPECT_TRUE(settle([&] { return processes().running().front()->pid == manager.pid; }));
    EXPECT_EQ(processes().find(manager.pid)->bundleIdentifier, "com.apple.finder");
    EXPECT_EQ(processes().find(manager.pid)->localizedName, "Test Manager");
    EXPECT_FALSE(processes().find(manager.pid)->isHidden);
}

TEST_F(X11, OtherDocksAndMonitorsThatComeAndGoAreFollowed)
{
    const auto before = displays().all();
    const CGRect frame = before.front().frame;
    int changes = 0;
    displays().onChange = [&] { ++changes; };
    const auto dock = start("dock",
        { "_NET_WM_WINDOW_TYPE ATOM _NET_WM_WINDOW_TYPE_DOCK",
            "_NET_WM_STRUT_PARTIAL CARDINAL 0 0 30 0 0 0 0 0 0 1919 0 0" },
        { 1000, 0, 300, 30 });
    const CGRect below { 0, 0, frame.width, frame.height - 30 };
    EXPECT_TRUE(settle([&] { return displays().all().front().visibleFrame == below; }));
    EXPECT_EQ(displays().all().front().frame, frame);
    EXPECT_GT(std::exchange(changes, 0), 0);

    ASSERT_EQ(std::system("xrandr --setmonitor '*right' 960/300x1080/300+960+0 screen"
                          " && xrandr --setmonitor left 960/300x1000/300+0+80 none"),
        0);
    EXPECT_TRUE(settle([&] { return displays().all().size() == 2; }));
    const auto all = displays().all();
    EXPECT_GT(changes, 0);
    EXPECT_EQ(all[0].frame, (CGRect { 0, 0, 960, 1080 })) << "the primary one is first and the origin";
    EXPECT_EQ(all[1].frame, (CGRect { -960, 0, 960, 1000 }));
    EXPECT_NE(all[0].number, all[1].number);
    EXPECT_NE(all[0].uuid, all[1].uuid);
    EXPECT_TRUE(settle([&] {
        return bounds(dock.window) == CGRect { 40, 0, 300, 30 };
    })) << "window space begins at the primary one";
    ASSERT_EQ(std::system("xrandr --delmonitor left && xrandr --delmonitor right"), 0);
    stop(dock);
    EXPECT_TRUE(settle([&] { return displays().all() == before; }));
}

}
