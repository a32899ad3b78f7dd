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
