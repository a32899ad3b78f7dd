#include "ModelTest.h"

#include "bar/BarView.h"
#include "foundation/NSFileManager.h"
#include "settings/Settings.h"
#include "unit/DrawingText.h"

#include <QAccessible>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>

#include <memory>

namespace {

/// A bar of medium size and 1400 points with three application buttons; the cells begin at 338, 46 points each. The
/// applications run in the background.
class BarViewTest : public ModelTest {
protected:
    void describe() override { desk.trash = { "letter.txt" }; }

    void SetUp() override
    {
        ModelTest::SetUp();
        Settings::barSize.set(BarSize::medium);
        view_ = std::make_unique<BarView>(CGRect { 0, 0, 1400, 52 });
        BarItem launcher = itemOf("Apps", run("Apps"));
        launcher.isLauncher = true;
        view_->setItems(
            { itemOf("Mail", run("Mail")), launcher, itemOf("Notes", run("Notes")), itemOf("Music", run("Music")) });
        settle();
        calls().clear();
    }

    static double cell(int position) { return 338 + 46 * position + 23; }
    void press(double x, double y = 20) { view_->mouseDown({ { x, y } }); }
    void drag(double x, double y = 20) { view_->mouseDragged({ { x, y } }); }
    void release(double x, double y = 20) { view_->mouseUp({ { x, y } }); }
    void hover(double x, double y = 20) { view_->mouseMoved({ { x, y } }); }

    void click(double x)
    {
        press(x);
        release(x);
    }

    /// The tile there, as a screen reader has it.
    NSAccessibilityElement tileAt(double x)
    {
        for (NSAccessibilityElement& tile : view_->accessibilityChildren())
            if (CGRectContainsPoint(tile.frame, { x, 20 }))
                return tile;
        ADD_FAILURE() << "no tile at " << x;
        return {};
    }

    void pressTile(double x)
    {
        if (const auto press = tileAt(x).press)
            press();
    }

    bool wasActivated(const std::string& name) { return count("activate", pidOf(name)) > 0; }
    pid_t pidOf(const std::string& name) { return world().processNamed("org." + name)->pid(); }

    /// A text is dragged there, as the toolkit tells it. Whether it could be dropped.
    bool dragTo(double x)
    {
        const QMimeData text;
        QDragEnterEvent enter({ int(x), 30 }, Qt::CopyAction | Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view_->widget(), &enter);
        EXPECT_TRUE(enter.isAccepted()) << "else its movement isn't told";
        QDragMoveEvent event({ int(x), 30 }, Qt::CopyAction | Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view_->widget(), &event);
        return event.isAccepted();
    }

    bool isRepaintPending() const
    {
        const auto due = RunLoop::main().nextDue();
        return due && *due <= clock.nanoseconds();
    }

    bool paints(const std::string& start)
    {
        return std::ranges::any_of(
            described(view_->record()), [&](const std::string& line) { return line.starts_with(start); });
    }

    std::unique_ptr<BarView> view_;
};

}

TEST_F(BarViewTest, APressBecomesADragBeyondFivePointsSidewaysElseAClickWhereTheButtonComesUp)
{
    const double launcher = view_->rect(BarComponent::launcher).midX();
    const struct {
        const char* what;
        double from;
        double x, y;
        const char* clicked;
        bool isDrag = false;
    } cases[] {
        { "5 points to the right", cell(0), cell(0) + 5.0, 20, "Mail" },
        { "5.1 points to the right", cell(0), cell(0) + 5.1, 20, nullptr, true },
        { "5.1 points to the left", cell(0), cell(0) - 5.1, 20, nullptr, true },
        { "all the way up", cell(0), cell(0), 51.9, "Mail" },
        { "above the bar", cell(0), cell(0), 300, nullptr },
        { "from beside the buttons, which can't be picked up", launcher, cell(1), 20, "Notes" },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        calls().clear();
        Settings::appOrder.set(AppOrder::dock);
        press(test.from);
        drag(test.x, test.y);
        release(test.x, test.y);
        for (const char* name : { "Mail", "Notes" })
            EXPECT_EQ(wasActivated(name), test.clicked && std::string(name) == test.clicked) << name;
        EXPECT_EQ(Settings::appOrder() == AppOrder::manual, test.isDrag);
    }
}

TEST_F(BarViewTest, ADragCommitsTheOrderAndSwitchesToManual)
{
    const struct {
        const char* what;
        int from;
        double to;
        Texts order;
        /// So quick that no movement is told between press and release.
        bool isQuick = false;
    } cases[] {
        { "quickly", 0, cell(2), { "org.Notes", "org.Music", "org.Mail" }, true },
        { "to the right", 0, cell(1), { "org.Notes", "org.Mail", "org.Music" } },
        { "to the left", 2, cell(0), { "org.Music", "org.Mail", "org.Notes" } },
        { "far past the right end", 0, 1e6, { "org.Notes", "org.Music", "org.Mail" } },
        { "far past the left end", 1, -1e6, { "org.Notes", "org.Mail", "org.Music" } },
        { "away and back to its place", 1, cell(1) - 1, { "org.Mail", "org.Notes", "org.Music" } },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        Settings::appOrder.set(AppOrder::dock);
        Settings::manualOrder.set({});
        log_.clear();
        EXPECT_EQ(view_->layoutCountDuringDrag(test.from, test.to), 3);
        EXPECT_EQ(names(view_->displayItems()), (Texts { "Mail", "Notes", "Music" }));
        press(cell(test.from));
        if (!test.isQuick) {
            drag(700);
            drag(test.to);
        }
        EXPECT_EQ(view_->displayItems().size(), 3u);
        release(test.to);

        EXPECT_EQ(Settings::manualOrder(), test.order);
        EXPECT_EQ(Settings::appOrder(), AppOrder::manual);
        EXPECT_EQ(logged("reorder: "), (Texts { "reorder: saved 3 items" }));
        EXPECT_EQ(names(view_->displayItems()), (Texts { "Mail", "Notes", "Music" }))
            << "the drag is over; the new order comes with the next refresh";
    }
    EXPECT_EQ(count("activate"), 0u) << "a drag is never a click";

    press(cell(2));
    drag(cell(0));
    view_->setItems({ view_->items().front() });
    EXPECT_EQ(names(view_->displayItems()), (Texts { "Mail" }));
    view_->setItems({});
    view_->record();
    release(cell(0));
    EXPECT_EQ(Settings::manualOrder(), Texts()) << "a list that grows shorter is committed as it is";
}

TEST_F(BarViewTest, EachPlaceHasItsClickWhichAScreenReaderCanDoToo)
{
    const auto middle = [&](BarComponent component) { return view_->rect(component).midX(); };
    const std::vector<BarItem> items = view_->items();
    const struct {
        const char* what;
        std::function<void(double)> press;
    } ways[] { { "the pointer", [&](double x) { click(x); } }, { "a screen reader", [&](double x) { pressTile(x); } } };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.what);
        view_->setItems(items);
        calls().clear();
        log_.clear();

        way.press(middle(BarComponent::launcher));
        EXPECT_TRUE(wasActivated("Apps"));

        way.press(cell(1));
        EXPECT_TRUE(wasActivated("Notes"));
        EXPECT_FALSE(wasActivated("Mail"));

        way.press(middle(BarComponent::finder));
        EXPECT_EQ(count("activate", world().processNamed(embedded::finderIdentifier)->pid()), 1u);

        way.press(middle(BarComponent::trash));
        EXPECT_EQ(logged("trash: "), (Texts { "trash: opening" }));

        way.press(middle(BarComponent::showDesktop));
        EXPECT_GT(count("hide"), 0u);
        EXPECT_TRUE(isRepaintPending());

        view_->setItems({});
        way.press(middle(BarComponent::launcher));
        EXPECT_EQ(logged("launcher: "), Texts { "launcher: sent Cmd+Space" }) << "without an entry, the desktop's own";
        EXPECT_EQ(count("postKeyDown") + count("postKeyUp"), 2u);
    }

    calls().clear();
    click(middle(BarComponent::search));
    click(1000);
    EXPECT_TRUE(calls().all().empty()) << "to the pointer the search box and the empty bar are no buttons";
}

TEST_F(BarViewTest, ATileSaysInWordsWhatItsPictureShows)
{
    const pid_t running = run("Mail");
    const pid_t hidden = run("Hidden");
    world().hide(hidden);
    const struct {
        std::optional<pid_t> pid;
        int windows;
        std::optional<std::string> badge;
        const char* help;
        bool isFrontmost = false;
        bool demandsAttention = false;
        std::optional<std::uint32_t> windowID {};
    } cases[] {
        { running, 0, std::nullopt, "" },
        { running, 1, "", "1 window", true },
        { running, 3, "2", "3 windows, 2 notifications" },
        { running, 11, "1", "11 windows, 1 notification" },
        { running, 0, "new", "badge new" },
        { running, 2, std::nullopt, "2 windows, wants attention", false, true },
        { running, 0, std::nullopt, "wants attention", true, true, 7 },
        { hidden, 1, std::nullopt, "1 window, hidden" },
        { std::nullopt, 0, "12", "12 notifications, not running" },
    };
    std::vector<BarItem> items;
    for (const auto& test : cases) {
        BarItem item = itemOf("Mail", test.pid);
        item.windowCount = test.windows;
        item.badge = test.badge;
        item.isFrontmost = test.isFrontmost;
        item.demandsAttention = test.demandsAttention;
        item.windowID = test.windowID;
        items.push_back(item);
    }
    view_->setItems(items);
    for (int i = 0; i < std::ssize(cases); ++i) {
        const NSAccessibilityElement tile = tileAt(cell(i));
        EXPECT_EQ(tile.label, "Mail");
        EXPECT_EQ(tile.help, cases[i].help);
        EXPECT_EQ(tile.isSelected, cases[i].isFrontmost) << tile.help;
        EXPECT_EQ(tile.frame, view_->layoutItems()[std::size_t(i)].rect) << tile.help;
    }
}

TEST_F(BarViewTest, TheTilesStandInTheAccessibilityTreeAsTheyStandOnTheBar)
{
    const auto tree = [&] {
        Texts tiles;
        for (const NSAccessibilityElement& tile : view_->accessibilityChildren())
            tiles.push_back(tile.label + (tile.help.empty() ? "" : ": " + tile.help) + (tile.isSelected ? "!" : ""));
        return tiles;
    };
    EXPECT_EQ(
        tree(), (Texts { "Apps launcher", "Search", "Show Desktop", "Finder!", "Mail", "Notes", "Music", "Trash" }));
    click(view_->rect(BarComponent::showDesktop).midX());
    std::filesystem::remove_all(NSHomeDirectory() + "/.Trash");
    Settings::componentOrder.set({ BarComponent::trash, BarComponent::apps, BarComponent::showDesktop });
    Settings::showLauncher.set(false);
    Settings::showSearch.set(false);
    world().quit(world().processNamed(embedded::finderIdentifier)->pid());
    view_->relayout();
    EXPECT_EQ(tree(), (Texts { "Trash: empty", "Mail", "Notes", "Music", "Show Desktop!" })) << "and no Finder";

    auto* bar = QAccessible::queryAccessibleInterface(view_->widget());
    ASSERT_TRUE(bar);
    EXPECT_EQ(bar->role(), QAccessible::ToolBar);
    ASSERT_GE(bar->childCount(), 5);
    auto* notes = bar->child(2);
    EXPECT_EQ(notes->text(QAccessible::Name), "Notes");
    EXPECT_EQ(notes->parent(), bar);
    EXPECT_EQ(bar->indexOfChild(notes), 2);
    const CGRect cell = view_->layoutItems()[1].rect;
    EXPECT_EQ(notes->rect().translated(-bar->rect().topLeft()), QRect(int(cell.x), 0, int(cell.width), 52));
    EXPECT_EQ(bar->childAt(notes->rect().left(), notes->rect().center().y()), notes);
    EXPECT_NE(bar->childAt(notes->rect().left() - 1, notes->rect().center().y()), notes);
    notes->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(wasActivated("Notes")) << "there is nothing to toggle";
    notes->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(wasActivated("Notes"));

    calls().clear();
    view_.reset();
    notes->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(wasActivated("Notes")) << "the bar has gone ahead of its widget";
}

TEST_F(BarViewTest, WhatLooksTheSameAgainIsNotPaintedAnew)
{
    const DrawingList* first = &view_->painted();
    view_->setNeedsDisplay();
    settle();
    EXPECT_EQ(&view_->painted(), first);
    hover(cell(0));
    settle();
    EXPECT_NE(&view_->painted(), first);
}

TEST_F(BarViewTest, AMiddleClickOpensANewWindow)
{
    const auto opened = [&](double x) {
        calls().clear();
        const QPointF point(x, 30);
        QMouseEvent down(QEvent::MouseButtonPress, point, point, Qt::MiddleButton, Qt::MiddleButton, Qt::NoModifier);
        QMouseEvent up(QEvent::MouseButtonRelease, point, point, Qt::MiddleButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view_->widget(), &down);
        QApplication::sendEvent(view_->widget(), &up);
        settle();
        return count("openAnother");
    };
    EXPECT_EQ(opened(cell(1)), 1u);
    EXPECT_EQ(calls().named("openAnother").at(0).value, host::AttributeValue(path("Notes")));
    EXPECT_FALSE(wasActivated("Notes"));
    EXPECT_EQ(opened(view_->rect(BarComponent::launcher).midX()), 0u);
    EXPECT_EQ(opened(1000), 0u);
}

TEST_F(BarViewTest, WhatIsDraggedOverAButtonIsHeldThereBeforeItsWindowComesForward)
{
    const auto move = [&](double x) { return dragTo(x); };
    EXPECT_FALSE(move(view_->rect(BarComponent::trash).midX())) << "a text is no file";
    EXPECT_FALSE(move(cell(0)));
    advance(0.49);
    EXPECT_FALSE(move(cell(0) + 5)) << "it can be dropped on the window, not here";
    EXPECT_FALSE(wasActivated("Mail"));
    advance(0.02);
    EXPECT_TRUE(wasActivated("Mail"));

    move(cell(1));
    advance(0.3);
    move(cell(2));
    advance(0.3);
    QDragLeaveEvent leave;
    QApplication::sendEvent(view_->widget(), &leave);
    move(view_->rect(BarComponent::launcher).midX());
    advance(1);
    EXPECT_FALSE(wasActivated("Notes")) << "it went on to the next";
    EXPECT_FALSE(wasActivated("Music")) << "it left";
    EXPECT_FALSE(wasActivated("Apps")) << "the launcher has no window";
}

TEST_F(BarViewTest, ThePictureTellsTheStateOfTheSystem)
{
    EXPECT_TRUE(paints("symbol trash.fill "));
    const std::filesystem::path trash = NSHomeDirectory() + "/.Trash";
    std::filesystem::rename(trash / "letter.txt", trash / ".letter.txt");
    view_->relayout();
    EXPECT_TRUE(paints("symbol trash ")) << "nothing in it that can be seen";
    std::filesystem::remove_all(trash);
    view_->relayout();
    EXPECT_TRUE(paints("symbol trash "));
    EXPECT_TRUE(paints("icon 294,16")) << "Finder runs";
    EXPECT_FALSE(paints("fill 234,4 38x44 r9 FFFFFF@0.18"));
    click(view_->rect(BarComponent::showDesktop).midX());
    EXPECT_TRUE(paints("fill 234,4 38x44 r9 FFFFFF@0.18")) << "the desktop is being shown";

    Settings::floatingBar.set(true);
    Settings::barTintHex.set("336699");
    Settings::barOpacity.set(0.75);
    view_->relayout();
    EXPECT_TRUE(paints("fill 8,8 1384x36 r12 336699@0.75"));
    Settings::barTintHex.set("no colour");
    view_->relayout();
    EXPECT_TRUE(paints("fill 8,8 1384x36 r12 1A1A1A@0.75"));
}
