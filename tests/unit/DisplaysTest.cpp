#include "ModelTest.h"

#include "system/Displays.h"

namespace {

/// A primary display with one to its right and one above it.
class DisplaysTest : public ModelTest {
protected:
    void describe() override
    {
        desk.displays = {
            display(1, "PRIMARY", { 0, 0, 1000, 800 }, { 1 }),
            display(2, "RIGHT", { 1000, 0, 1000, 600 }, { 2 }),
            display(3, "ABOVE", { 0, 800, 1000, 500 }, { 3 }),
        };
    }

    static std::optional<std::uint32_t> displayContaining(const CGRect& rect)
    {
        const auto screen = Displays::screenContaining(rect);
        return screen ? Displays::displayID(*screen) : std::nullopt;
    }
};

}

TEST_F(DisplaysTest, AWindowBelongsToTheScreenItOverlapsMost)
{
    const struct {
        const char* what;
        CGRect window;
        std::uint32_t display;
    } cases[] {
        { "on the primary", { 10, 10, 100, 100 }, 1 },
        { "mostly on the right", { 950, 300, 200, 100 }, 2 },
        { "half and half", { 900, 300, 200, 100 }, 1 },
        { "above the primary, so at a negative y", { 100, -300, 200, 200 }, 3 },
        { "only touching the right one from below", { 1200, 800, 100, 100 }, 2 },
        { "an edge against the right one, an overlap with the primary", { 900, 100, 100, 100 }, 1 },
        { "off all screens", { 5000, 5000, 100, 100 }, 1 },
    };
    for (const auto& test : cases)
        EXPECT_EQ(displayContaining(test.window), test.display) << test.what;

    const pid_t editor = run("Editor");
    openWindow(editor, { 1200, 300, 400, 300 });
    world().activate(editor);
    EXPECT_EQ(displayContaining({ 5000, 5000, 100, 100 }), 2u) << "off all screens, so on that with the focus";
}

TEST_F(DisplaysTest, ADisplayWithoutANumberIsLeftOutAndOneWithoutAUuidIsNot)
{
    auto numberless = display(0, "NUMBERLESS", { 2000, 0, 800, 600 }, { 5 });
    numberless.number.reset();
    world().addScreen(numberless);
    auto plain = display(5, "", { 2800, 0, 800, 600 }, { 6 });
    plain.uuid.reset();
    world().addScreen(plain);

    const auto displays = Displays::all();
    ASSERT_EQ(displays.size(), 4u);
    EXPECT_EQ(displays[2].cgsIdentifier, "ABOVE");
    EXPECT_EQ(displays[3].displayID, 5u);
    EXPECT_EQ(displays[3].cgsIdentifier, std::nullopt);
    EXPECT_EQ(displays[3].frame(), (CGRect { 2800, 0, 800, 600 }));
    EXPECT_EQ(Displays::screenFor(5), displays[3].screen);
    EXPECT_FALSE(Displays::screenFor(99));

    while (!world().screens().all().empty())
        world().removeScreen(0);
    EXPECT_TRUE(Displays::all().empty());
    EXPECT_FALSE(Displays::screenContaining({ 0, 0, 100, 100 }));
}
