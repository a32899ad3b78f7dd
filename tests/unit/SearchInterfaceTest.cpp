#include "ModelTest.h"

#include "appkit/ShortenedText.h"
#include "bar/BarController.h"
#include "settings/Settings.h"
#include "unit/DrawingText.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

namespace {

/// A bar of medium size on a display of 1440 by 900, and three windows of Mail to find. What is typed goes in by the
/// toolkit's own events.
class SearchInterfaceTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        Settings::barSize.set(BarSize::medium);
        mail_ = run("Mail");
        for (const char* title :
            { "Inbox", "Outbox", "Box of a title so long that no row of the list is wide enough for it" })
            windows_.push_back(openWindow(mail_, { 100, 100, 800, 600 }, title));
        notes_ = run("Notes");
        world().activate(notes_);
        controller_ = std::make_shared<BarController>(Displays::all().front());
        controller_->start();
        settle();
    }

    BarView& view() { return *controller_->view(); }
    BarSearchField& field() { return *view().searchField(); }
    QLineEdit& edit() { return *field().widget()->findChild<QLineEdit*>(); }
    const SearchResultsPanel& panel() { return view().resultsPanel(); }

    void pressIntoField()
    {
        QTest::mouseClick(&edit(), Qt::LeftButton);
        settle();
    }

    void key(Qt::Key key)
    {
        QTest::keyClick(&edit(), key);
        settle();
    }

    /// In place of what the field held.
    void type(const char* text)
    {
        edit().selectAll();
        edit().del();
        QTest::keyClicks(&edit(), text);
        settle();
    }

    Texts rows()
    {
        Texts titles;
        if (panel().isVisible())
            for (const SearchHit& hit : panel().listView()->results())
                titles.push_back(hit.title);
        return titles;
    }

    void clickList(double y)
    {
        panel().listView()->mouseUp({ { 100, panel().frame().height - y } });
        settle();
    }

    /// As a screen reader does it.
    void press(NSView& in, const std::string& label)
    {
        const auto elements = in.accessibilityChildren();
        const auto found = std::ranges::find(elements, label, &NSAccessibilityElement::label);
        ASSERT_NE(found, elements.end()) << label;
        found->press();
        settle();
    }

    bool hasKeyboard() { return world().frontmost() == getpid() && controller_->window().canBecomeKey(); }

    pid_t mail_ = 0;
    pid_t notes_ = 0;
    std::vector<std::uint32_t> windows_;
    std::shared_ptr<BarController> controller_;
};

}

TEST_F(SearchInterfaceTest, KeysMoveTheSelectionAllTheWayRoundAndTypingStartsAtTheTop)
{
    EXPECT_FALSE(controller_->window().canBecomeKey());
    pressIntoField();
    EXPECT_TRUE(hasKeyboard());
    type("box");
    const std::pair<Qt::Key, int> steps[] { { Qt::Key_Down, 1 }, { Qt::Key_Up, 0 }, { Qt::Key_Up, 2 },
        { Qt::Key_Down, 0 }, { Qt::Key_Down, 1 } };
    for (const auto& [pressed, selected] : steps) {
        key(pressed);
        EXPECT_EQ(panel().listView()->selectedIndex(), selected);
    }
    const Texts lines = described(panel().listView()->record());
    for (const char* line : { "fill 0,0 320x128 r0 262626@0.98", "fill 0,44 320x40 r0 3478F6@0.85",
             "text Outbox 13 FFFFFF 42,65", "text Mail 10 FFFFFF 42,51" })
        EXPECT_EQ(std::ranges::count(lines, line), 1) << line;
    const auto told = panel().listView()->accessibilityChildren();
    ASSERT_EQ(told.size(), 3u);
    EXPECT_EQ(told[1].label + ", " + told[1].help, "Outbox, Mail");
    EXPECT_EQ(told[1].frame, (CGRect { 0, 44, 320, 40 }));
    EXPECT_TRUE(told[1].isSelected && !told[0].isSelected && !told[2].isSelected);

    key(Qt::Key_Backspace);
    EXPECT_EQ(panel().listView()->selectedIndex(), 0);
    key(Qt::Key_Escape);
    EXPECT_FALSE(hasKeyboard());
    EXPECT_EQ(world().frontmost(), notes_);
    EXPECT_EQ(field().stringValue(), "");
    EXPECT_EQ(rows(), Texts());
    press(view(), "Search");
    EXPECT_TRUE(hasKeyboard());
    key(Qt::Key_Escape);

    QMimeData text;
    text.setText("box");
    QDragEnterEvent enter({ 5, 5 }, Qt::CopyAction, &text, Qt::LeftButton, {});
    QDragMoveEvent move({ 5, 5 }, Qt::CopyAction, &text, Qt::LeftButton, {});
    QDropEvent drop({ 5, 5 }, Qt::CopyAction, &text, Qt::LeftButton, {});
    for (QEvent* event : { static_cast<QEvent*>(&enter), static_cast<QEvent*>(&move), static_cast<QEvent*>(&drop) })
        QApplication::sendEvent(&edit(), event);
    EXPECT_FALSE(move.isAccepted() || drop.isAccepted()) << "nothing is dropped on the field";
    EXPECT_EQ(field().stringValue(), "");
}

TEST_F(SearchInterfaceTest, APickCarriesTheRowOutAndEndsTheSearch)
{
    const struct {
        const char* how;
        std::function<void()> pick;
        std::optional<std::size_t> window;
    } cases[] {
        { "return on the second", [this] { key(Qt::Key_Down), key(Qt::Key_Return); }, 1 },
        { "the first row's middle", [this] { clickList(24); }, 0 },
        { "the top margin", [this] { clickList(1); }, 0 },
        { "the last row", [this] { clickList(123); }, 2 },
        { "a screen reader", [this] { press(*panel().listView(), "Outbox"); }, 1 },
        { "the bottom margin", [this] { clickList(125); }, std::nullopt },
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.how);
        std::ranges::for_each(windows_, [this](std::uint32_t window) { world().focus(window); });
        world().activate(notes_);
        WindowIndex::invalidate();
        pressIntoField();
        type("box");
        ASSERT_EQ(rows().size(), 3u);
        each.pick();
        EXPECT_EQ(hasKeyboard(), !each.window);
        EXPECT_EQ(rows().empty(), each.window.has_value());
        key(Qt::Key_Escape);
        EXPECT_EQ(world().windows().front().number, windows_[each.window.value_or(2)]);
    }
}

TEST(ShortenedText, KeepsWholeCharactersAndAtLeastSoManyOfThem)
{
    const NSFont font = NSFont::systemFont(13);
    const double wide = sizeWithAttributes("abcdefgh…", font).width;
    const struct {
        const char* text;
        double width;
        const char* shortened;
    } cases[] {
        { "abcdefgh", wide, "abcdefgh" },
        { "abcdefghijklmnop", wide, "abcdefgh…" },
        { "abcdefghijklmnop", 1, "abcd…" },
        { "äöüßé", 1, "äöüß…" },
        // A letter with an accent of its own, and a family of three: one character each.
        { "e\u0301e\u0301e\u0301e\u0301e\u0301", 1, "e\u0301e\u0301e\u0301e\u0301…" },
        { "👨‍👩‍👧abcdef", 1, "👨‍👩‍👧abc…" },
    };
    for (const auto& each : cases)
        EXPECT_EQ(shortenedText(each.text, font, each.width, 4), each.shortened);
    const std::string huge(10'000'000, 'x');
    EXPECT_LE(sizeWithAttributes(shortenedText(huge, font, 172, 4), font).width, 172);
}
