#include "contract/DesktopUnderTest.h"

#include "base/Value.h"
#include "host/Accessibility.h"
#include "host/Capture.h"
#include "host/Displays.h"
#include "host/Keyboard.h"
#include "host/Pointer.h"
#include "host/Processes.h"
#include "host/Surfaces.h"
#include "host/Windows.h"

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

constexpr double timeout = 0.5;
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
class Contract : public testing::TestWithParam<DesktopKind> {
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

    void TearDown() override
    {
        if (!under_)
            return;
        processes().onEvent = nullptr;
        windows().onChange = nullptr;
        under_.reset();
    }

    host::Processes& processes() { return under_->desktop().processes(); }
    host::Windows& windows() { return under_->desktop().windows(); }
    host::Accessibility& accessibility() { return under_->desktop().accessibility(); }
    host::Displays& displays() { return under_->desktop().displays(); }

    bool settle(const std::function<bool()>& condition) { return under_->settle(condition); }

    // What the window list says.

    std::vector<std::uint32_t> listed(bool onScreenOnly)
    {
        std::vector<std::uint32_t> numbers;
        const auto list = windows().list(onScreenOnly);
        if (!list || !list->array())
            return numbers;
        for (const Value& entry : *list->array()) {
            const Value* number = entry.find("kCGWindowNumber");
            if (number && number->integer<std::uint32_t>())
                numbers.push_back(*number->integer<std::uint32_t>());
        }
        return numbers;
    }

    bool isListed(std::uint32_t window)
    {
        const auto numbers = listed(false);
        return std::find(numbers.begin(), numbers.end(), window) != numbers.end();
    }

    bool isOnScreen(std::uint32_t window)
    {
        const auto numbers = listed(true);
        return std::find(numbers.begin(), numbers.end(), window) != numbers.end();
    }

    bool isInFrontOf(std::uint32_t front, std::uint32_t back)
    {
        const auto numbers = listed(false);
        const auto first = std::find(numbers.begin(), numbers.end(), front);
        const auto second = std::find(numbers.begin(), numbers.end(), back);
        return second != numbers.end() && first < second;
    }

    std::optional<Value> entry(std::uint32_t window, const char* key)
    {
        const auto list = windows().list(false);
        if (!list || !list->array())
            return std::nullopt;
        for (const Value& candidate : *list->array()) {
            const Value* number = candidate.find("kCGWindowNumber");
            if (!number || number->integer<std::uint32_t>() != window)
                continue;
            const Value* value = candidate.find(key);
            return value ? std::optional(*value) : std::nullopt;
        }
        return std::nullopt;
    }

    std::string title(std::uint32_t window)
    {
        const auto name = entry(window, "kCGWindowName");
        return name && name->string() ? *name->string() : std::string();
    }

    CGRect bounds(std::uint32_t window)
    {
        const auto value = entry(window, "kCGWindowBounds");
        const auto rect = value ? CGRectMakeWithDictionaryRepresentation(*value) : std::nullopt;
        return rect.value_or(CGRect {});
    }

    std::vector<std::uint64_t> spaces(std::uint32_t window)
    {
        std::vector<std::uint64_t> ids;
        const auto value = windows().spaces(window);
        if (!value || !value->array())
            return ids;
        for (const Value& id : *value->array())
            ids.push_back(id.integer<std::uint64_t>().value_or(0));
        return ids;
    }

    // What accessibility says and does.

    static ElementID application(pid_t pid) { return { pid, ElementID::Kind::application, 0 }; }
    static ElementID element(pid_t pid, std::uint32_t window) { return { pid, ElementID::Kind::window, window }; }

    template <class T>
    std::optional<T> read(const ElementID& of, std::string_view attribute)
    {
        host::AttributeValue value;
        if (accessibility().read(of, attribute, timeout, value) != kAXErrorSuccess || !std::holds_alternative<T>(value))
            return std::nullopt;
        return std::get<T>(value);
    }

    AXError write(const ElementID& of, std::string_view attribute, const host::AttributeValue& value)
    {
        return accessibility().write(of, attribute, timeout, value);
    }

    AXError readError(const ElementID& of, std::string_view attribute)
    {
        host::AttributeValue value;
        return accessibility().read(of, attribute, timeout, value);
    }

    bool isMinimised(pid_t pid, std::uint32_t window)
    {
        return read<bool>(element(pid, window), "AXMinimized") == true;
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

    struct Program {
        pid_t pid = 0;
        std::uint32_t window = 0;
    };

    Program start(const std::string& name, const CGRect& frame = lowLeft)
    {
        Program program;
        program.pid = under_->startProgram(name);
        program.window = under_->openWindow(program.pid, name + " window", frame);
        EXPECT_TRUE(settle([&] { return isOnScreen(program.window) && processes().find(program.pid); }));
        return program;
    }

    void focus(const Program& program)
    {
        under_->focus(program.window);
        EXPECT_TRUE(settle([&] { return processes().frontmost() == program.pid; }));
    }

    std::unique_ptr<DesktopUnderTest> under_;
    std::vector<std::pair<ProcessEvent, pid_t>> events_;
    int windowChanges_ = 0;
};

// Programs and their windows

TEST_P(Contract, AWindowIsListedWithItsOwnerTitleLayerBoundsAndSpace)
{
    const auto program = start("alpha");

    EXPECT_TRUE(settle([&] { return title(program.window) == "alpha window"; }));
    EXPECT_EQ(entry(program.window, "kCGWindowOwnerPID")->integer<pid_t>(), program.pid);
    EXPECT_EQ(entry(program.window, "kCGWindowLayer")->integer(), 0);
    ASSERT_TRUE(entry(program.window, "kCGWindowOwnerName"));
    EXPECT_TRUE(entry(program.window, "kCGWindowOwnerName")->string());
    EXPECT_GE(bounds(program.window).width, lowLeft.width - placement);
    EXPECT_GE(bounds(program.window).height, lowLeft.height - placement);
    EXPECT_EQ(spaces(program.window), std::vector { windows().activeSpace() });
}

TEST_P(Contract, AStartedProgramIsARegularApplicationAndIsPosted)
{
    const auto program = start("alpha");

    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::launched, program.pid); }));
    const auto process = processes().find(program.pid);
    EXPECT_EQ(process->policy, host::ActivationPolicy::regular);
    EXPECT_FALSE(process->isHidden);
    EXPECT_TRUE(process->localizedName && !process->localizedName->empty());
    const auto& running = processes().running();
    EXPECT_TRUE(
        std::any_of(running.begin(), running.end(), [&](const auto& each) { return each->pid == program.pid; }));
}

TEST_P(Contract, AFinishedProgramLeavesTheRunningOnesAndIsPosted)
{
    const auto program = start("alpha");

    under_->endProgram(program.pid);

    EXPECT_TRUE(settle([&] { return !processes().find(program.pid) && !isListed(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::terminated, program.pid); }));
    EXPECT_NE(processes().frontmost(), program.pid);
}

TEST_P(Contract, TerminatingAProgramEndsIt)
{
    const auto program = start("alpha");
    const auto other = start("beta", upRight);

    EXPECT_TRUE(processes().terminate(program.pid));

    EXPECT_TRUE(settle([&] { return !processes().find(program.pid); }));
    EXPECT_TRUE(processes().find(other.pid));
}

TEST_P(Contract, RequestsToAProgramThatHasGoneAreNotMade)
{
    const auto program = start("alpha");
    under_->endProgram(program.pid);
    ASSERT_TRUE(settle([&] { return !processes().find(program.pid); }));

    EXPECT_FALSE(processes().activate(program.pid));
    EXPECT_FALSE(processes().hide(program.pid));
    EXPECT_FALSE(processes().terminate(program.pid));
}

TEST_P(Contract, AnOpenedAndAClosedWindowAreTold)
{
    const auto program = start("alpha");
    forgetPosted();

    const auto second = under_->openWindow(program.pid, "second", upRight);
    EXPECT_TRUE(settle([&] { return isListed(second) && windowChanges_ > 0; }));

    forgetPosted();
    under_->closeWindow(second);
    EXPECT_TRUE(settle([&] { return !isListed(second) && windowChanges_ > 0; }));
    EXPECT_TRUE(isListed(program.window));
}

TEST_P(Contract, AClosedWindowsElementIsInvalid)
{
    const auto program = start("alpha");
    const auto second = under_->openWindow(program.pid, "second", upRight);
    ASSERT_TRUE(settle([&] { return isListed(second); }));

    under_->closeWindow(second);
    ASSERT_TRUE(settle([&] { return !isListed(second); }));

    EXPECT_EQ(readError(element(program.pid, second), "AXTitle"), kAXErrorInvalidUIElement);
    EXPECT_EQ(accessibility().perform(element(program.pid, second), "AXRaise", timeout), kAXErrorInvalidUIElement);
    EXPECT_FALSE(windows().spaces(second));
}

TEST_P(Contract, ATitleChangeShows)
{
    const auto program = start("alpha");

    under_->setTitle(program.window, "Grüße — ノート");

    EXPECT_TRUE(settle([&] { return title(program.window) == "Grüße — ノート"; }));
    EXPECT_EQ(read<std::string>(element(program.pid, program.window), "AXTitle"), "Grüße — ノート");
}

TEST_P(Contract, AnApplicationNamesItsWindowsAndTheFocusedOne)
{
    const auto program = start("alpha");
    const auto second = under_->openWindow(program.pid, "second", upRight);
    ASSERT_TRUE(settle([&] { return isListed(second); }));
    focus(program);

    const auto named = read<std::vector<ElementID>>(application(program.pid), "AXWindows");
    ASSERT_TRUE(named);
    std::set<std::uint64_t> numbers;
    for (const ElementID& window : *named)
        numbers.insert(window.id);
    EXPECT_EQ(numbers, (std::set<std::uint64_t> { program.window, second }));
    EXPECT_TRUE(settle([&] {
        return read<ElementID>(application(program.pid), "AXFocusedWindow") == element(program.pid, program.window);
    }));
}

// Front and back

TEST_P(Contract, ActivatingAnApplicationBringsItForwardAndIsPosted)
{
    const auto back = start("alpha");
    const auto front = start("beta", upRight);
    focus(front);
    ASSERT_TRUE(settle([&] { return wasPosted(ProcessEvent::activated, front.pid); }));
    forgetPosted();

    EXPECT_TRUE(processes().activate(back.pid));

    EXPECT_TRUE(settle([&] { return processes().frontmost() == back.pid && isInFrontOf(back.window, front.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::activated, back.pid); }));
    EXPECT_FALSE(wasPosted(ProcessEvent::activated, front.pid));
}

TEST_P(Contract, RaisingAWindowPutsItInFrontAndItsApplicationForward)
{
    const auto back = start("alpha");
    const auto second = under_->openWindow(back.pid, "second", upRight);
    const auto front = start("beta");
    ASSERT_TRUE(settle([&] { return isListed(second); }));
    focus(front);

    EXPECT_EQ(write(application(back.pid), "AXFrontmost", true), kAXErrorSuccess);
    EXPECT_EQ(write(element(back.pid, back.window), "AXMain", true), kAXErrorSuccess);
    EXPECT_EQ(accessibility().perform(element(back.pid, back.window), "AXRaise", timeout), kAXErrorSuccess);

    EXPECT_TRUE(settle([&] { return processes().frontmost() == back.pid; }));
    EXPECT_TRUE(settle([&] { return isInFrontOf(back.window, front.window) && isInFrontOf(back.window, second); }));
    EXPECT_TRUE(settle(
        [&] { return read<ElementID>(application(back.pid), "AXFocusedWindow") == element(back.pid, back.window); }));
}

TEST_P(Contract, TheListIsFrontFirst)
{
    const auto a = start("alpha");
    const auto b = start("beta");
    const auto c = start("gamma");

    for (const auto& program : { c, a, b })
        focus(program);

    EXPECT_TRUE(settle([&] { return isInFrontOf(b.window, a.window) && isInFrontOf(a.window, c.window); }));
}

// Hiding

TEST_P(Contract, AHiddenApplicationReportsHiddenAndComesBackAsItWas)
{
    const auto program = start("alpha");
    const auto minimised = under_->openWindow(program.pid, "second", upRight);
    ASSERT_TRUE(settle([&] { return isOnScreen(minimised); }));
    under_->minimise(minimised);
    ASSERT_TRUE(settle([&] { return isMinimised(program.pid, minimised); }));

    EXPECT_TRUE(processes().hide(program.pid));
    EXPECT_TRUE(settle([&] { return processes().find(program.pid)->isHidden && !isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::hidden, program.pid); }));
    EXPECT_TRUE(isListed(program.window));
    EXPECT_FALSE(spaces(program.window).empty());

    EXPECT_TRUE(processes().unhide(program.pid));
    EXPECT_TRUE(settle([&] { return !processes().find(program.pid)->isHidden && isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return wasPosted(ProcessEvent::unhidden, program.pid); }));
    EXPECT_TRUE(isMinimised(program.pid, minimised));
    EXPECT_FALSE(isMinimised(program.pid, program.window));
}

TEST_P(Contract, HidingOneApplicationLeavesAnotherAlone)
{
    const auto hidden = start("alpha");
    const auto other = start("beta", upRight);

    processes().hide(hidden.pid);

    EXPECT_TRUE(settle([&] { return processes().find(hidden.pid)->isHidden; }));
    EXPECT_FALSE(processes().find(other.pid)->isHidden);
    EXPECT_TRUE(isOnScreen(other.window));
    EXPECT_FALSE(wasPosted(ProcessEvent::hidden, other.pid));
}

TEST_P(Contract, HidingTheFrontmostApplicationLeavesItNotFrontmost)
{
    const auto other = start("alpha");
    const auto front = start("beta", upRight);
    focus(other);
    focus(front);

    processes().hide(front.pid);

    EXPECT_TRUE(settle([&] { return processes().frontmost() != front.pid; }));
}

// A window's own state

TEST_P(Contract, AMovedAndResizedWindowsBoundsFollow)
{
    const auto program = start("alpha");
    const CGRect goal { 210, 130, 520, 400 };

    EXPECT_EQ(write(element(program.pid, program.window), "AXSize", goal.size()), kAXErrorSuccess);
    EXPECT_EQ(write(element(program.pid, program.window), "AXPosition", goal.origin()), kAXErrorSuccess);
    EXPECT_EQ(write(element(program.pid, program.window), "AXSize", goal.size()), kAXErrorSuccess);

    EXPECT_TRUE(settle([&] { return isAbout(bounds(program.window), goal); }));
    EXPECT_TRUE(settle([&] {
        const auto position = read<CGPoint>(element(program.pid, program.window), "AXPosition");
        const auto size = read<CGSize>(element(program.pid, program.window), "AXSize");
        return position && size && isAbout({ position->x, position->y, size->width, size->height }, goal);
    }));
}

TEST_P(Contract, AMinimisedWindowStaysListedAndComesBack)
{
    const auto program = start("alpha");
    const CGRect before = bounds(program.window);

    EXPECT_EQ(write(element(program.pid, program.window), "AXMinimized", true), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return isMinimised(program.pid, program.window) && !isOnScreen(program.window); }));
    EXPECT_TRUE(isListed(program.window));
    EXPECT_FALSE(spaces(program.window).empty());
    EXPECT_FALSE(processes().find(program.pid)->isHidden);

    EXPECT_EQ(write(element(program.pid, program.window), "AXMinimized", false), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] { return !isMinimised(program.pid, program.window) && isOnScreen(program.window); }));
    EXPECT_TRUE(settle([&] { return isAbout(bounds(program.window), before); }));
}

TEST_P(Contract, AWindowLeavesFullScreenForItsOldPlace)
{
    const auto program = start("alpha");
    const CGRect before = bounds(program.window);

    under_->enterFullScreen(program.window);
    EXPECT_TRUE(settle([&] {
        return read<bool>(element(program.pid, program.window), "AXFullScreen") == true
            && isAbout(bounds(program.window), displays().all().front().frame);
    }));

    EXPECT_EQ(write(element(program.pid, program.window), "AXFullScreen", false), kAXErrorSuccess);
    EXPECT_TRUE(settle([&] {
        return read<bool>(element(program.pid, program.window), "AXFullScreen") == false
            && isAbout(bounds(program.window), before);
    }));
}

TEST_P(Contract, AnUnknownAttributeOrActionIsRefused)
{
    const auto program = start("alpha");

    EXPECT_NE(readError(element(program.pid, program.window), "AXNoSuchThing"), kAXErrorSuccess);
    EXPECT_NE(write(element(program.pid, program.window), "AXNoSuchThing", true), kAXErrorSuccess);
    EXPECT_NE(accessibility().perform(element(program.pid, program.window), "AXNoSuchThing", timeout), kAXErrorSuccess);
}

// Spaces

TEST_P(Contract, AnotherSpaceComesToTheFrontAndIsTold)
{
    under_->switchToSpace(0);
    const auto program = start("alpha");
    const auto first = windows().activeSpace();
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

TEST_P(Contract, TheActiveSpaceIsTheCurrentOneOfADisplayAndAmongItsSpaces)
{
    const auto value = windows().displaySpaces();
    ASSERT_TRUE(value && value->array());

    bool found = false;
    for (const Value& display : *value->array()) {
        ASSERT_TRUE(display.find("Display Identifier"));
        ASSERT_TRUE(display.find("Current Space") && display.find("Current Space")->find("id64"));
        ASSERT_TRUE(display.find("Spaces") && display.find("Spaces")->array());
        const Value current = *display.find("Current Space")->find("id64");
        const auto& all = *display.find("Spaces")->array();
        EXPECT_TRUE(
            std::any_of(all.begin(), all.end(), [&](const Value& space) { return *space.find("id64") == current; }));
        found = found || current.integer<std::uint64_t>() == windows().activeSpace();
    }
    EXPECT_TRUE(found);
}

// Displays and the pointer

TEST_P(Contract, DisplaysAreNumberedOnceAndKeepTheirVisibleFrameInside)
{
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
}

TEST_P(Contract, ThePointerIsWhereItWasMoved)
{
    // The pixels of a display's corners are among the points that it holds.
    const CGRect frame = displays().all().front().frame;
    for (const CGPoint point :
        { CGPoint { 300, 200 }, frame.origin(), CGPoint { frame.maxX() - 1, frame.maxY() - 1 } }) {
        under_->movePointer(point);
        EXPECT_TRUE(settle([&] { return under_->desktop().pointer().location() == point; }));
    }
}

// The keyboard

TEST_P(Contract, AKeyThatTheTapSwallowsReachesNobodyAndOneThatPassesTheFocusedProgramOnce)
{
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

    type(swallowed, option | command, 0);
    EXPECT_TRUE(settle([&] { return seen(swallowed) == 1; })) << "no tap yet";
    keyboard.enableTap(true);
    EXPECT_TRUE(keyboard.isTapEnabled());
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

TEST_P(Contract, APostedKeyReachesTheFocusedProgram)
{
    constexpr std::uint16_t space = 49;
    const auto program = start("alpha");
    focus(program);
    auto& keyboard = under_->desktop().keyboard();
    ASSERT_TRUE(keyboard.canPost(space));
    EXPECT_FALSE(keyboard.canPost(999));
    keyboard.post({ space, 0x100000 }, true);
    keyboard.post({ space, 0x100000 }, false);
    EXPECT_TRUE(settle([&] { return under_->pressesSeen(program.window, space) == 1; }));
}

// Our own panels

TEST_P(Contract, APanelLiesWhereItIsPutAndTakesNothingFromAnybody)
{
    const auto program = start("alpha");
    focus(program);
    const auto display = displays().all().front();
    const CGRect bar { 0, 0, display.frame.width, 40 };
    auto& surfaces = under_->desktop().surfaces();

    QWidget panel;
    surfaces.adopt(panel, { .level = 101, .collectionBehavior = 337, .isOpaque = false, .hasShadow = false }, bar);
    surfaces.orderFront(panel);
    EXPECT_TRUE(settle([&] { return panel.isVisible(); }));
    EXPECT_TRUE(settle([&] {
        const QPoint corner = panel.mapToGlobal(QPoint(0, 0));
        return corner == QPoint(0, static_cast<int>(display.frame.height) - 40) && panel.height() == 40
            && panel.width() == static_cast<int>(display.frame.width);
    }));
    EXPECT_EQ(processes().frontmost(), program.pid);
    EXPECT_EQ(displays().all().front().visibleFrame, display.visibleFrame);

    const CGRect raised { 0, 100, display.frame.width, 60 };
    surfaces.setFrame(panel, raised);
    EXPECT_TRUE(settle([&] {
        return panel.height() == 60
            && panel.mapToGlobal(QPoint(0, 0)).y() == static_cast<int>(display.frame.height) - 160;
    }));

    surfaces.orderOut(panel);
    EXPECT_TRUE(settle([&] { return !panel.isVisible(); }));
    surfaces.release(panel);
}

TEST_P(Contract, APanelHasTheKeyboardUntilItIsGivenBackTakenOrGone)
{
    const auto first = start("alpha");
    const auto second = start("beta");
    auto& surfaces = under_->desktop().surfaces();
    QWidget panel;
    surfaces.adopt(panel, { .level = 101 }, { 0, 0, displays().all().front().frame.width, 40 });
    surfaces.orderFront(panel);
    ASSERT_TRUE(settle([&] { return panel.isVisible(); }));

    const auto isInFront = [&](pid_t pid) { return settle([&] { return processes().frontmost() == pid; }); };
    const struct {
        const char* how;
        std::function<void()> end;
        pid_t after;
    } cases[] {
        { "given back", [&] { surfaces.giveBackKeyboard(); }, first.pid },
        { "the user turned elsewhere", [&] { focus(second), surfaces.giveBackKeyboard(); }, second.pid },
        { "out of sight", [&] { surfaces.orderOut(panel); }, first.pid },
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.how);
        focus(first);
        ASSERT_TRUE(isInFront(first.pid));
        // The window manager may have nothing to say of a panel that takes the focus by itself, but of who lost it.
        surfaces.takeKeyboard(panel);
        EXPECT_TRUE(settle([&] { return processes().frontmost() != first.pid; }));
        each.end();
        EXPECT_TRUE(isInFront(each.after));
    }
    surfaces.release(panel);
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
