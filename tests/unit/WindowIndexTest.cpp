#include "ModelTest.h"

#include "system/WindowRaise.h"
#include "windowserver/CGWindow.h"
#include "windowserver/Damage.h"

#include <functional>

namespace {

class WindowIndexTest : public ModelTest {
protected:
    std::size_t countOf(pid_t pid)
    {
        WindowIndex::invalidate();
        const auto map = WindowIndex::byPID();
        const auto place = map->find(pid);
        return place == map->end() ? 0 : place->second.size();
    }
};

}

TEST_F(WindowIndexTest, CountsOrdinaryWindowsOfAUsableSize)
{
    const struct {
        const char* what;
        CGRect bounds;
        int layer;
        std::vector<std::uint64_t> spaces;
        bool counts;
    } cases[] {
        { "as small as may be", { 0, 0, 200, 150 }, 0, { 1 }, true },
        { "too narrow", { 0, 0, 199.5, 400 }, 0, { 1 }, false },
        { "too low", { 0, 0, 400, 149.5 }, 0, { 1 }, false },
        { "a palette", { 0, 0, 900, 900 }, 3, { 1 }, false },
        { "on no space", { 0, 0, 900, 900 }, 0, {}, false },
        { "on another space", { 0, 0, 900, 900 }, 0, { 2 }, true },
    };
    for (const auto& test : cases)
        for (const auto policy : { host::ActivationPolicy::regular, host::ActivationPolicy::accessory }) {
            const pid_t pid = run("Editor", policy);
            const auto window = openWindow(pid, test.bounds);
            world().setLayer(window, test.layer);
            world().setSpaces(window, test.spaces);
            world().setMinimised(window, test.layer == 0);
            const bool isRegular = policy == host::ActivationPolicy::regular;
            EXPECT_EQ(countOf(pid), test.counts && isRegular ? 1u : 0u) << test.what << isRegular;
        }
}

TEST_F(WindowIndexTest, MalformedEntriesAreSkippedAndAForeignElementSpoilsTheList)
{
    const pid_t pid = run("Editor");
    openWindow(pid);
    const Value bounds = CGRectCreateDictionaryRepresentation({ 0, 0, 800, 600 });
    const Value::Dictionary sound { { kCGWindowNumber, 900 }, { kCGWindowOwnerPID, pid }, { kCGWindowLayer, 0 },
        { kCGWindowBounds, bounds } };
    for (const auto& [key, value] : sound) {
        auto wrong = sound;
        wrong.set(key, "text");
        auto lacking = sound;
        lacking.erase(key);
        windowServerDamage().listEntries = { wrong, lacking };
        EXPECT_EQ(countOf(pid), 1u) << key;
    }
    windowServerDamage().listEntries = { "no dictionary" };
    EXPECT_EQ(countOf(pid), 0u);
}

TEST_F(WindowIndexTest, OneReadingServesForFourTenthsOfASecond)
{
    const pid_t pid = run("Editor");
    openWindow(pid);
    const auto first = WindowIndex::byPID();
    openWindow(pid);
    advance(0.39);
    EXPECT_EQ(WindowIndex::byPID(), first);
    EXPECT_EQ(count("windowList"), 1u);
    advance(0.02);
    EXPECT_EQ(WindowIndex::byPID()->at(pid).size(), 2u);

    WindowIndex::invalidate();
    WindowIndex::byPID();
    EXPECT_EQ(count("windowList"), 3u);
    EXPECT_EQ(first->at(pid).size(), 1u) << "a reading that is held doesn't change";
}

TEST_F(WindowIndexTest, InACrowdOnlyTheWindowThatChangesIsLookedAt)
{
    std::vector<pid_t> programs;
    for (int number = 0; number < 20; ++number)
        programs.push_back(run("Program " + std::to_string(number)));
    std::vector<std::uint32_t> windows;
    for (int number = 0; number < 2000; ++number)
        windows.push_back(openWindow(programs[static_cast<std::size_t>(number) % programs.size()]));
    EXPECT_EQ(countOf(programs[7]), 100u);

    const pid_t pid = programs[7];
    const struct {
        const char* what;
        std::function<void()> change;
        std::size_t count;
        std::size_t lookedAt;
    } cases[] {
        { "nothing", [] {}, 100, 0 },
        { "the focus changes", [&] { world().focus(windows[1203]); }, 100, 0 },
        { "one opens", [&] { openWindow(pid); }, 101, 1 },
        { "one has another title", [&] { world().setTitle(windows[907], "Other"); }, 101, 1 },
        { "one becomes too small",
            [&] {
                world().setBounds(windows[907], { 0, 0, 10, 10 });
            },
            100, 0 },
        { "one lies on another space", [&] { world().setSpaces(windows[1007], { 2 }); }, 100, 1 },
        { "one closes", [&] { world().close(windows[27]); }, 99, 0 },
        { "thirty in a row close",
            [&] { std::for_each_n(windows.begin() + 500, 30, [&](auto each) { world().close(each); }); }, 97, 0 },
    };
    for (const auto& test : cases) {
        test.change();
        calls().clear();
        EXPECT_EQ(countOf(pid), test.count) << test.what;
        EXPECT_EQ(count("window"), test.lookedAt) << test.what;
    }
    EXPECT_EQ(WindowIndex::byPID()->at(pid)[44].id, windows[967]) << "the others keep their order";
}

TEST_F(WindowIndexTest, TitlesNeedAWindowAndTheRight)
{
    EXPECT_FALSE(WindowIndex::titlesAvailable());
    for (const bool isPermitted : { true, false }) {
        openWindow(run("Editor"), { 0, 0, 800, 600 }, "Letter");
        world().setScreenCapturePermitted(isPermitted);
        WindowIndex::invalidate();
        EXPECT_EQ(WindowIndex::titlesAvailable(), isPermitted);
        EXPECT_EQ(WindowIndex::all().front().title, isPermitted ? "Letter" : "");
    }
}
