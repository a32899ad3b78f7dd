#include "contract/DesktopFixture.h"

#include "host/Capture.h"
#include "host/Keyboard.h"

#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

std::vector<DesktopKind>& desktopKinds()
{
    static std::vector<DesktopKind> kinds;
    return kinds;
}

namespace {

using host::ElementID;
using host::ProcessEvent;

/// A window manager may round a frame to its grid of pixels.
constexpr double placement = 2;

const CGRect lowLeft { 60, 320, 420, 320 };
const CGRect upRight { 520, 120, 440, 340 };

bool isAbout(const CGRect& a, const CGRect& b)
{
    return std::abs(a.x - b.x) <= placement && std::abs(a.y - b.y) <= placement
        && std::abs(a.width - b.width) <= placement && std::abs(a.height - b.height) <= placement;
}

/// What every desktop does alike, because the program relies on it. Each test starts with a desktop of its own.
class Contract : public testing::TestWithParam<DesktopKind>, protected DesktopFixture<DesktopUnderTest> {
protected:
    void SetUp() override
    {
        under_ = GetParam().make();
        ASSERT_TRUE(under_);
        processes().onEvent = [this](ProcessEvent event, const std::shared_ptr<const host::Process>& process) {
            events_.emplace_back(event, process->pid);
        };
        windows().onChange = [this] { ++windowChanges_; };
    }

    void TearDown() override { endDesktop(); }

    bool isMinimised(pid_t pid, std::uint32_t window)
    {
        return read<bool>(element(pid, window), Attribute::minimized) == true;
    }

    // What the desktop told.

    bool wasPosted(ProcessEvent event, pid_t pid) const
    {
        return std::find(events_.begin(), events_.end(), std::pair(event, pid)) != events_.end();
    }
    void forgetPosted()
    {
        events_.clear();
        windowChanges_ = 0;
    }

    // Programs to look at.

    Program start(const std::string& name, const CGRect& frame = lowLeft)
    {
        Program program;
        program.pid = under_->startProgram(name);
        program.window = under_->openWindow(program.pid, name + " window", frame);
        EXPECT_TRUE(settle([&] { return isOnScreen(program.window) && processes().find(program.pid); }));
        return program;
    }

    /// A bar on which the user has just clicked: who wasn't touched may be refused the keyboard.
    void showBar(QWidget& panel)
    {
        DesktopFixture::showBar(panel, 40);
        clickOnBar();
    }

    void clickOnBar()
    {
        under_->click({ 20, 20 });
        settle([turns = 0]() mutable { return ++turns > 20; });
    }

    void focus(const Program& program)
    {
        under_->focus(program.window);
        EXPECT_TRUE(settle([&] { return processes().frontmost() == program.pid; }));
    }

    std::vector<std::pair<ProcessEvent, pid_t>> events_;
    int windowChanges_ = 0;
};

TEST_P(Contract, AProgramAndItsWindowsAreListedNamedAndToldUntilTheyGo)
{
    const auto program = start("alpha");
    const auto window = element(program.pid, program.window);
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::launched, program.pid); }));
    const auto process = processes().find(program.pid);
    EXPECT_EQ(process->policy, host::ActivationPolicy::regular);
    EXPECT_FALSE(process->isHidden);
    EXPECT_TRUE(process->localizedName && !process->localizedName->empty());
    EXPECT_EQ(std::ranges::count(processes().running(), program.pid, [](const auto& each) { return each->pid; }), 1);
    EXPECT_TRUE(settle([&] { return title(program.window) == "alpha window"; }));
    EXPECT_EQ(listed(program.window).owner, program.pid);
    EXPECT_EQ(listed(program.window).layer, 0);
    EXPECT_GE(bounds(program.window).width, lowLeft.width - placement);
    EXPECT_GE(bounds(program.window).height, lowLeft.height - placement);
    EXPECT_EQ(spaces(program.window), std::vector { windows().activeSpace().value() });
    under_->setTitle(program.window, "Grüße — ノート");
    EXPECT_TRUE(settle([&] { return title(program.window) == "Grüße — ノート"; }));
    EXPECT_EQ(read<std::string>(window, Attribute::title), "Grüße — ノート");

    forgetPosted();
    const auto second = under_->openWindow(program.pid, "second", upRight);
    EXPECT_TRUE(settle([&] { return isListed(second) && windowChanges_ > 0; }));
    const auto named = read<std::vector<ElementID>>(application(program.pid), Attribute::windows);
    ASSERT_TRUE(named);
    std::set<std::uint64_t> numbers;
    for (const ElementID& each : *named)
        numbers.insert(each.id);
    EXPECT_EQ(numbers, (std::set<std::uint64_t> { program.window, second }));
    EXPECT_EQ(readError(window, Attribute::windows), kAXErrorAttributeUnsupported);
    EXPECT_EQ(write(window, Attribute::frontmost, true), kAXErrorAttributeUnsupported);
    EXPECT_EQ(raise(application(program.pid)), kAXErrorActionUnsupported);

    forgetPosted();
    under_->closeWindow(second);
    EXPECT_TRUE(settle([&] { return !isListed(second) && windowChanges_ > 0; }));
    EXPECT_EQ(readError(element(program.pid, second), Attribute::title), kAXErrorInvalidUIElement);
    EXPECT_EQ(raise(element(program.pid, second)), kAXErrorInvalidUIElement);
    EXPECT_FALSE(windows().find(second));
    EXPECT_TRUE(isListed(program.window));

    under_->endProgram(program.pid);
    EXPECT_TRUE(settle([&] { return !processes().find(program.pid) && !isListed(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::terminated, program.pid); }));
    EXPECT_NE(processes().frontmost(), program.pid);
    EXPECT_FALSE(processes().activate(program.pid));
    EXPECT_FALSE(processes().hide(program.pid));
    EXPECT_FALSE(processes().terminate(program.pid));
}

TEST_P(Contract, WhatComesForwardIsFirstInTheListAndToldAndKeepsItsPlaceElsewhere)
{
    const auto a = start("alpha");
    const auto b = start("beta", upRight);
    const auto c = start("gamma");
    for (const auto& program : { c, a, b })
        focus(program);
    EXPECT_TRUE(settle([&] { return isInFrontOf(b.window, a.window) && isInFrontOf(a.window, c.window); }));
    ASSERT_TRUE(settle([&] { return wasPosted(ProcessEvent::activated, b.pid); }));

    forgetPosted();
    EXPECT_TRUE(processes().activate(c.pid));
    EXPECT_TRUE(settle([&] { return processes().frontmost() == c.pid && isInFrontOf(c.window, b.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::activated, c.pid); }));
    EXPECT_FALSE(wasPosted(ProcessEvent::activated, b.pid));

    const auto second = under_->openWindow(a.pid, "second", upRight);
    ASSERT_TRUE(settle([&] { return isInFrontOf(second, a.window); }));
    focus(b);
    const auto appeared = [&] {
        std::vector<std::uint32_t> numbers;
        for (const auto& window : windows().all())
            if (window->owner == a.pid)
                numbers.push_back(window->number);
        return numbers;
    };
    EXPECT_EQ(appeared(), (std::vector { a.window, second }));
    EXPECT_EQ(write(application(a.pid), Attribute::frontmost, true), kAXErrorSuccess);
    EXPECT_EQ(write(element(a.pid, a.window), Attribute::main, true), kAXErrorSuccess);
    EXPECT_EQ(raise(element(a.pid, a.window)), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return processes().frontmost() == a.pid; }));
    EXPECT_TRUE(settle([&] { return isInFrontOf(a.window, b.window) && isInFrontOf(a.window, second); }));
    EXPECT_TRUE(settle(
        [&] { return read<ElementID>(application(a.pid), Attribute::focusedWindow) == element(a.pid, a.window); }));
    EXPECT_EQ(appeared(), (std::vector { a.window, second }));
}

TEST_P(Contract, FocusThatMovesWithinAProgramOrToNoneIsTold)
{
    const auto program = start("alpha");
    const Program second { program.pid, under_->openWindow(program.pid, "second", upRight) };
    ASSERT_TRUE(settle([&] { return isListed(second.window); }));
    const auto isFocused = [&](const Program& one) {
        return read<ElementID>(application(one.pid), Attribute::focusedWindow) == element(one.pid, one.window);
    };
    const auto isTold = [&] { return windowChanges_ + events_.size() > 0; };
    // Not every window manager gives a program's next window the focus.
    under_->focus(second.window);
    ASSERT_TRUE(settle([&] { return isFocused(second); }));
    for (const Program& next : { program, second, program }) {
        forgetPosted();
        under_->focus(next.window);
        EXPECT_TRUE(settle([&] { return isFocused(next) && isTold(); })) << next.window;
    }

    QWidget panel;
    showBar(panel);
    forgetPosted();
    surfaces().takeKeyboard(panel);
    EXPECT_TRUE(settle([&] { return processes().frontmost() != program.pid && isTold(); }));
    surfaces().release(panel);
}

TEST_P(Contract, AHiddenApplicationIsOutOfSightAloneAndComesBackAsItWas)
{
    const auto other = start("beta");
    const auto program = start("alpha");
    const auto minimised = under_->openWindow(program.pid, "second", upRight);
    ASSERT_TRUE(settle([&] { return isOnScreen(minimised); }));
    under_->minimise(minimised);
    ASSERT_TRUE(settle([&] { return isMinimised(program.pid, minimised); }));
    focus(other);
    focus(program);

    EXPECT_TRUE(processes().hide(program.pid));
    EXPECT_TRUE(settle([&] { return processes().find(program.pid)->isHidden && !isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::hidden, program.pid); }));
    EXPECT_TRUE(settle([&] { return processes().frontmost() != program.pid; }));
    EXPECT_TRUE(isListed(program.window));
    EXPECT_FALSE(spaces(program.window).empty());
    EXPECT_FALSE(processes().find(other.pid)->isHidden);
    EXPECT_TRUE(isOnScreen(other.window));
    EXPECT_FALSE(wasPosted(ProcessEvent::hidden, other.pid));

    EXPECT_TRUE(processes().unhide(program.pid));
    EXPECT_TRUE(settle([&] { return !processes().find(program.pid)->isHidden && isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::unhidden, program.pid); }));
    EXPECT_TRUE(isMinimised(program.pid, minimised));
    EXPECT_FALSE(isMinimised(program.pid, program.window));
}

TEST_P(Contract, ApplicationsThatComeBackTogetherKeepTheirOrder)
{
    // In the order of their launch they would come back the other way round.
    const Program front = start("front");
    const Program back = start("back");
    const Program middle = start("middle", upRight);
    focus(back);
    focus(middle);
    focus(front);
    ASSERT_TRUE(
        settle([&] { return isInFrontOf(front.window, middle.window) && isInFrontOf(middle.window, back.window); }));
    for (const Program& each : { front, back, middle })
        processes().hide(each.pid);
    const auto allAre = [&](bool hidden) {
        return std::ranges::all_of(std::initializer_list { front, back, middle },
            [&](const Program& each) { return processes().find(each.pid)->isHidden == hidden; });
    };
    ASSERT_TRUE(settle([&] { return allAre(true); }));

    for (const Program& each : { front, back, middle })
        processes().unhide(each.pid);
    EXPECT_TRUE(settle([&] {
        return allAre(false) && isInFrontOf(front.window, middle.window) && isInFrontOf(middle.window, back.window);
    }));
}

TEST_P(Contract, OpeningARunningApplicationShowsItAndOnlyAnotherMakesAWindow)
{
    const std::string path = under_->install("opener");
    const auto windowsOfIt = [&] {
        std::vector<std::shared_ptr<const host::Window>> own;
        for (const auto& window : windows().all())
            if (const auto owner = processes().find(window->owner); owner && owner->bundlePath == path)
                own.push_back(window);
        return own;
    };
    const auto isInFront = [&] {
        const auto front = processes().frontmost();
        const auto process = front ? processes().find(*front) : nullptr;
        return process && process->bundlePath == path;
    };
    EXPECT_TRUE(applications().open(path));
    ASSERT_TRUE(settle([&] { return windowsOfIt().size() == 1 && isInFront(); }));
    const auto window = windowsOfIt().front();

    const Program other = start("other");
    focus(other);
    EXPECT_TRUE(applications().open(path));
    EXPECT_TRUE(settle(isInFront));
    write(element(window->owner, window->number), Attribute::minimized, true);
    ASSERT_TRUE(settle([&] { return isMinimised(window->owner, window->number); }));
    focus(other);
    EXPECT_TRUE(applications().open(path));
    EXPECT_TRUE(settle([&] { return isInFront() && !isMinimised(window->owner, window->number); }));
    processes().hide(window->owner);
    ASSERT_TRUE(settle([&] { return processes().find(window->owner)->isHidden; }));
    EXPECT_TRUE(applications().open(path));
    EXPECT_TRUE(settle([&] { return isInFront() && isOnScreen(window->number); }));

    EXPECT_TRUE(applications().openAnother(path));
    EXPECT_TRUE(settle([&] { return windowsOfIt().size() > 1 && isInFront(); }));
    EXPECT_EQ(windowsOfIt().size(), 2u) << "none of the others has made one";
    for (const auto& each : windowsOfIt())
        processes().forceTerminate(each->owner);
    EXPECT_TRUE(settle([&] { return windowsOfIt().empty(); }));
}

TEST_P(Contract, AWindowThatDemandsAttentionSaysSoUntilItIsLookedAt)
{
    const Program caller = start("caller");
    const Program other = start("other"); // Over it: some window managers see to it that what shows isn't announced.
    focus(other);
    forgetPosted();
    under_->demandAttention(caller.window);
    EXPECT_TRUE(settle([&] { return listed(caller.window).demandsAttention && windowChanges_ > 0; }));
    EXPECT_FALSE(listed(other.window).demandsAttention);
    forgetPosted();
    focus(caller);
    EXPECT_TRUE(settle([&] { return !listed(caller.window).demandsAttention && windowChanges_ > 0; }));
    focus(other);
    EXPECT_FALSE(listed(caller.window).demandsAttention);
}

TEST_P(Contract, AWindowIsPlacedAndComesBackThereFromTheDockAndFromFullScreen)
{
    const auto program = start("alpha");
    const auto window = element(program.pid, program.window);
    const CGRect goal { 210, 130, 520, 400 };
    EXPECT_EQ(write(window, Attribute::size, goal.size()), kAXErrorSuccess);
    EXPECT_EQ(write(window, Attribute::position, goal.origin()), kAXErrorSuccess);
    EXPECT_EQ(write(window, Attribute::size, goal.size()), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return isAbout(bounds(program.window), goal); }));
    EXPECT_TRUE(settle([&] {
        const auto position = read<CGPoint>(window, Attribute::position);
        const auto size = read<CGSize>(window, Attribute::size);
        return position && size && isAbout({ position->x, position->y, size->width, size->height }, goal);
    }));

    EXPECT_EQ(write(window, Attribute::minimized, true), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return isMinimised(program.pid, program.window) && !isOnScreen(program.window); }));
    EXPECT_TRUE(isListed(program.window));
    EXPECT_FALSE(spaces(program.window).empty());
    EXPECT_FALSE(processes().find(program.pid)->isHidden);
    EXPECT_EQ(write(window, Attribute::minimized, false), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return !isMinimised(program.pid, program.window) && isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return isAbout(bounds(program.window), goal); }));

    under_->enterFullScreen(program.window);
    EXPECT_TRUE(settle([&] {
        return read<bool>(window, Attribute::fullScreen) == true
            && isAbout(bounds(program.window), displays().all().front().frame);
    }));
    EXPECT_EQ(fullScreenOwners(), std::vector { program.pid });
    EXPECT_EQ(write(window, Attribute::fullScreen, false), kAXErrorSuccess);
    EXPECT_TRUE(settle(
        [&] { return read<bool>(window, Attribute::fullScreen) == false && isAbout(bounds(program.window), goal); }));
    EXPECT_TRUE(settle([&] { return fullScreenOwners().empty(); }));
}

TEST_P(Contract, AnElementTellsWhatItIsAndWhatCanBeSet)
{
    const auto behind = start("alpha");
    const auto program = start("beta");
    const auto application = host::ElementID { program.pid, host::ElementID::Kind::application, 0 };
    const auto window = element(program.pid, program.window);
    processes().activate(program.pid);
    EXPECT_TRUE(settle([&] { return read<bool>(window, Attribute::focused) == true; }));
    EXPECT_EQ(read<bool>(application, Attribute::frontmost), true);
    EXPECT_EQ(read<std::string>(application, Attribute::role), "AXApplication");
    EXPECT_EQ(read<std::string>(window, Attribute::role), "AXWindow");
    EXPECT_EQ(read<std::string>(window, Attribute::subrole), "AXStandardWindow");
    EXPECT_EQ(read<bool>(window, Attribute::main), true);
    EXPECT_EQ(read<bool>(element(behind.pid, behind.window), Attribute::focused), false);
    EXPECT_EQ(read<bool>(element(behind.pid, behind.window), Attribute::main), true);

    EXPECT_EQ(isSettable(application, Attribute::frontmost), true);
    EXPECT_EQ(isSettable(application, Attribute::windows), false);
    for (const auto attribute : { Attribute::position, Attribute::size, Attribute::minimized, Attribute::fullScreen })
        EXPECT_EQ(isSettable(window, attribute), true);
    EXPECT_EQ(isSettable(window, Attribute::title), false);
    EXPECT_EQ(isSettable(element(program.pid, 0x7FFFFFFF), Attribute::size), std::nullopt);
}

TEST_P(Contract, AnotherSpaceComesToTheFrontAndIsTold)
{
    under_->switchToSpace(0);
    const auto program = start("alpha");
    const auto first = windows().activeSpace().value();
    EXPECT_NE(first, 0u);
    forgetPosted();

    under_->switchToSpace(1);

    EXPECT_TRUE(settle([&] { return windows().activeSpace() != first && windowChanges_ > 0; }));
    EXPECT_TRUE(settle([&] { return !isOnScreen(program.window); }));
    EXPECT_TRUE(isListed(program.window));
    EXPECT_EQ(spaces(program.window), std::vector { first });

    under_->switchToSpace(0);
    EXPECT_TRUE(settle([&] { return windows().activeSpace() == first && isOnScreen(program.window); }));
}

TEST_P(Contract, DisplaysTheirSpacesAndThePointerAreWhereTheySay)
{
    const auto displaySpaces = windows().displaySpaces();
    for (const host::DisplaySpaces& display : displaySpaces) {
        EXPECT_TRUE(display.uuid);
        EXPECT_EQ(std::ranges::count(display.spaces, display.current, &host::Space::id), 1);
    }
    EXPECT_GT(std::ranges::count(displaySpaces, windows().activeSpace(), &host::DisplaySpaces::current), 0);

    const auto all = displays().all();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all.front().frame.origin(), CGPoint {});

    std::set<std::uint32_t> numbers;
    for (const auto& display : all) {
        EXPECT_TRUE(display.number && numbers.insert(*display.number).second);
        EXPECT_EQ(CGRectIntersection(display.visibleFrame, display.frame), display.visibleFrame);
        EXPECT_GT(display.visibleFrame.height, 0);
    }
    ASSERT_TRUE(displays().main());
    EXPECT_LT(*displays().main(), all.size());

    // The pixels of a display's corners are among the points that it holds.
    const CGRect frame = all.front().frame;
    for (const CGPoint point :
        { CGPoint { 300, 200 }, frame.origin(), CGPoint { frame.maxX() - 1, frame.maxY() - 1 } }) {
        under_->movePointer(point);
        EXPECT_TRUE(settle([&] { return under_->desktop().pointer().location() == point; }));
    }
}

// The keyboard

TEST_P(Contract, AKeyThatTheTapSwallowsReachesNobodyAndOneThatPassesOrIsPostedTheFocusedProgramOnce)
{
    constexpr std::uint16_t space = 49;
    constexpr std::uint16_t swallowed = 11;
    constexpr std::uint16_t passed = 18;
    constexpr std::uint64_t control = 0x40000;
    constexpr std::uint64_t option = 0x80000;
    constexpr std::uint64_t command = 0x100000;
    const auto program = start("alpha");
    focus(program);
    auto& keyboard = under_->desktop().keyboard();
    std::vector<host::KeyPress> shown;
    keyboard.onPress = [&](const host::KeyPress& press) {
        shown.push_back(press);
        return press.key == swallowed;
    };
    ASSERT_TRUE(keyboard.tap({ { swallowed, option | command }, { passed, option, control | command } }));
    const auto type = [&](std::uint16_t key, std::uint64_t flags, std::size_t shownSoFar) {
        under_->typeKey(key, flags);
        EXPECT_TRUE(settle([&] { return shown.size() >= shownSoFar; }));
        EXPECT_EQ(shown.size(), shownSoFar);
    };
    const auto seen = [&](std::uint16_t key) { return under_->pressesSeen(program.window, key); };

    EXPECT_TRUE(keyboard.canPost(space));
    EXPECT_FALSE(keyboard.canPost(999));
    keyboard.post({ space, command }, true);
    keyboard.post({ space, command }, false);
    EXPECT_TRUE(settle([&] { return seen(space) == 1; }));

    type(swallowed, option | command, 0);
    EXPECT_TRUE(settle([&] { return seen(swallowed) == 1; })) << "no tap yet";
    keyboard.enableTap(true);
    EXPECT_TRUE(keyboard.isTapEnabled());
    // A window manager that has one of the modifiers for itself gets the keys after it; then they are named.
    if (const auto taken = keyboard.takenKeys(); !taken.empty()) {
        EXPECT_EQ(taken.size(), 1u);
        type(passed, option, 1);
        EXPECT_TRUE(settle([&] { return seen(passed) == 1; }));
        GTEST_SKIP() << "another program has " << taken.front();
    }
    type(swallowed, option | command, 1);
    type(swallowed, option | command | control, 2);
    type(passed, option, 3);
    EXPECT_EQ(shown.back(), (host::KeyPress { passed, option }));
    EXPECT_TRUE(settle([&] { return seen(passed) == 1; }));
    type(passed, option | command, 3);
    EXPECT_TRUE(settle([&] { return seen(passed) == 2; }));
    EXPECT_EQ(seen(swallowed), 1u);
    keyboard.enableTap(false);
    type(swallowed, option | command, 3);
    EXPECT_TRUE(settle([&] { return seen(swallowed) == 2; }));
    EXPECT_EQ(seen(passed), 2u);
    keyboard.onPress = nullptr;
}

// Our own panels

TEST_P(Contract, APanelLiesWhereItIsPutAndTakesNothingFromAnybody)
{
    const auto program = start("alpha");
    focus(program);
    const auto display = displays().all().front();
    const CGRect bar { 0, 0, display.frame.width, 40 };

    QWidget panel;
    surfaces().adopt(panel, { .role = host::SurfaceRole::bottomBar, .level = 101, .isOpaque = false }, bar);
    surfaces().orderFront(panel);
    EXPECT_TRUE(settle([&] { return panel.isVisible(); }));
    EXPECT_TRUE(settle([&] {
        const QPoint corner = panel.mapToGlobal(QPoint(0, 0));
        return corner == QPoint(0, static_cast<int>(display.frame.height) - 40) && panel.height() == 40
            && panel.width() == static_cast<int>(display.frame.width);
    }));
    EXPECT_EQ(processes().frontmost(), program.pid);
    EXPECT_EQ(displays().all().front().visibleFrame, display.visibleFrame);

    const CGRect raised { 0, 100, display.frame.width, 60 };
    surfaces().setFrame(panel, raised);
    EXPECT_TRUE(settle([&] {
        return panel.height() == 60
            && panel.mapToGlobal(QPoint(0, 0)).y() == static_cast<int>(display.frame.height) - 160;
    }));

    surfaces().orderOut(panel);
    EXPECT_TRUE(settle([&] { return !panel.isVisible(); }));
    surfaces().release(panel);
}

TEST_P(Contract, APanelHasTheKeyboardUntilItIsGivenBackTakenOrGone)
{
    const auto first = start("alpha");
    const auto second = start("beta");
    QWidget panel;
    showBar(panel);

    const auto isInFront = [&](pid_t pid) { return settle([&] { return processes().frontmost() == pid; }); };
    const struct {
        const char* how;
        std::function<void()> end;
        pid_t after;
    } cases[] {
        { "given back", [&] { surfaces().giveBackKeyboard(); }, first.pid },
        { "the user turned elsewhere", [&] { focus(second), surfaces().giveBackKeyboard(); }, second.pid },
        { "out of sight", [&] { surfaces().orderOut(panel); }, first.pid },
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.how);
        focus(first);
        ASSERT_TRUE(isInFront(first.pid));
        clickOnBar();
        // The window manager may have nothing to say of a panel that takes the focus by itself, but of who lost it.
        surfaces().takeKeyboard(panel);
        EXPECT_TRUE(settle([&] { return processes().frontmost() != first.pid; }));
        each.end();
        EXPECT_TRUE(isInFront(each.after));
    }
    surfaces().release(panel);
}

TEST_P(Contract, AnOrdinaryWindowOfOursTakesPartAsOthersDoAndTellsWhereItIs)
{
    const auto program = start("alpha");
    focus(program);
    EXPECT_TRUE(settle([&] { return processes().frontmost() == program.pid; }));
    QWidget window;
    window.setWindowTitle("Settings");
    surfaces().adopt(window, { .role = host::SurfaceRole::window }, { 300, 250, 400, 300 });
    for (int time = 0; time < 2; ++time) {
        SCOPED_TRACE(time);
        surfaces().orderFront(window);
        surfaces().takeKeyboard(window);
        EXPECT_TRUE(settle([&] { return processes().frontmost() == getpid(); })) << "it is in front";
        surfaces().setFrame(window, { 320, 260, 500, 350 });
        EXPECT_TRUE(settle([&] { return surfaces().frame(window) == CGRect { 320, 260, 500, 350 }; }));
        surfaces().orderOut(window);
        surfaces().giveBackKeyboard();
        EXPECT_TRUE(settle([&] { return processes().frontmost() == program.pid; })) << "and then the one before";
    }
    surfaces().release(window);
}

TEST_P(Contract, ACaptureAnswersLaterAndOnceWithAPictureOrAnError)
{
    const auto program = start("alpha");
    const auto gone = start("beta");
    under_->closeWindow(gone.window);
    EXPECT_TRUE(settle([&] { return !isListed(gone.window); }));

    auto& capture = under_->desktop().capture();
    EXPECT_TRUE(capture.isPermitted());
    std::vector<std::pair<bool, bool>> answers;
    for (const auto window : { program.window, gone.window, program.window })
        capture.capture(window, 240, 180, [&](const host::Captured& captured) {
            answers.emplace_back(captured.picture != nullptr, captured.error.empty());
        });
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(settle([&] { return answers.size() == 3; }));
    std::ranges::sort(answers);
    EXPECT_EQ(answers, (std::vector<std::pair<bool, bool>> { { false, false }, { true, true }, { true, true } }));
}

INSTANTIATE_TEST_SUITE_P(Desktops, Contract, testing::ValuesIn(desktopKinds()),
    [](const testing::TestParamInfo<DesktopKind>& kind) { return kind.param.name; });

}
