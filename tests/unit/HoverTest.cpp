#include "ModelTest.h"

#include "appkit/NSMenu.h"
#include "bar/BarController.h"
#include "bar/Preview.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "host/Displays.h"
#include "settings/Settings.h"
#include "unit/DrawingText.h"

#include <QTest>

#include <memory>

namespace {

constexpr double delay = 0.45;

/// A bar of medium size, 52 points, at the bottom of a display of 1440 by 900, with the buttons of "Mail", which has
/// two windows, and "Notes", which has none.
class HoverTest : public ModelTest {
protected:
    void describe() override { desk.trash = { "letter.txt" }; }

    void SetUp() override
    {
        ModelTest::SetUp();
        Settings::barSize.set(BarSize::medium);
        mail_ = run("Mail");
        inbox_ = openWindow(mail_, { 100, 100, 800, 600 }, "Inbox");
        draft_ = openWindow(mail_, { 200, 100, 400, 600 }, "");
        run("Notes");
        settle();
        DisplayInfo display = Displays::all().front();
        controller_ = std::make_shared<BarController>(display);
        controller_->start();
        settle();
        log_.clear();
    }

    BarView& view() { return *controller_->view(); }
    const TooltipPanel& tooltip() { return view().tooltip(); }
    const PreviewPanel& preview() { return view().preview(); }
    PreviewView& content() { return *preview().content(); }
    static CGPoint middleOf(const CGRect& rect) { return { rect.midX(), rect.midY() }; }
    CGPoint middle(BarComponent component) { return middleOf(view().rect(component)); }
    CGPoint button(const std::string& name)
    {
        for (const auto& item : view().layoutItems())
            if (item.item.name == name)
                return middleOf(item.rect);
        ADD_FAILURE() << name << " has no button";
        return {};
    }

    /// By the view's own tracking, then until what is to come shows.
    void hover(CGPoint point)
    {
        view().mouseMoved({ point });
        advance(delay);
    }

    void press(CGPoint point) { view().mouseDown({ point }); }
    void drag(CGPoint point) { view().mouseDragged({ point }); }
    void release(CGPoint point) { view().mouseUp({ point }); }

    /// By the global monitor; the bar's window lies at the origin.
    void movePointer(CGPoint point)
    {
        desktop().pointer().move(point);
        settle();
    }

    std::string shown()
    {
        if (tooltip().isVisible() && preview().isShowing())
            return "both";
        if (preview().isShowing())
            return "preview";
        return tooltip().isVisible() ? tooltip().label().text() : "nothing";
    }

    std::vector<std::string> cards() { return described(content().record()); }
    long cardsWith(const std::string& text)
    {
        return std::ranges::count_if(
            cards(), [&](const std::string& line) { return line.find(text) != std::string::npos; });
    }

    pid_t mail_ = 0;
    std::uint32_t inbox_ = 0;
    std::uint32_t draft_ = 0;
    std::shared_ptr<BarController> controller_;
};

}

TEST_F(HoverTest, EachPlaceTellsWhatItIs)
{
    const struct {
        const char* what;
        CGPoint point;
        const char* shown;
    } cases[] {
        { "an application without windows", button("Notes"), "Notes" },
        { "one with windows", button("Mail"), "preview" },
        { "the show-desktop button", middle(BarComponent::showDesktop), "Show desktop files and folders (⌥⌘D)" },
        { "the Finder", middle(BarComponent::finder), "Finder" },
        { "the Trash", middle(BarComponent::trash), "Trash" },
        { "the launcher without an entry", middle(BarComponent::launcher), "nothing" },
        { "the search box", middle(BarComponent::search), "nothing" },
        { "beside everything", { 1300, 20 }, "nothing" },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        hover(test.point);
        EXPECT_EQ(shown(), test.shown);
    }
    Settings::showWindowPreviews.set(false);
    hover(button("Mail"));
    EXPECT_EQ(shown(), "Mail");
    Settings::showTooltips.set(false);
    hover(button("Notes"));
    EXPECT_EQ(shown(), "nothing");

    Settings::showTooltips.set(true);
    Settings::showWindowPreviews.set(true);
    Settings::grouping.set(WindowGrouping::never);
    settle();
    hover({ 1300, 20 });
    hover(button("Mail"));
    EXPECT_EQ(shown(), "Mail") << "the button of one window";
}

TEST_F(HoverTest, TheDelayBeginsAnewOnlyWhereSomethingElseIsHovered)
{
    const CGPoint notes = button("Notes");
    view().mouseMoved({ notes });
    advance(0.3);
    view().mouseMoved({ { notes.x + 5, notes.y } });
    advance(0.14);
    EXPECT_EQ(shown(), "nothing");
    advance(0.01);
    EXPECT_EQ(shown(), "Notes");
    view().mouseMoved({ middle(BarComponent::trash) });
    advance(0.44);
    EXPECT_EQ(shown(), "nothing");
    advance(0.01);
    EXPECT_EQ(shown(), "Trash");
}

TEST_F(HoverTest, WhatEndsATooltipEndsOneToComeToo)
{
    const CGPoint notes = button("Notes");
    const CGPoint beside { 1300, 20 }, away { 700, 600 }, moved { notes.x + 6, notes.y };
    const std::pair<const char*, std::function<void()>> cases[] {
        { "a release", [&] { release(beside); } },
        { "the start of a drag", [&] { press(notes), drag(moved); } },
        { "leaving", [&] { movePointer(away); } },
        { "another edge", [&] { Settings::barEdge.set(BarEdge::top); } },
        { "another size", [&] { Settings::barSize.set(BarSize::large); } },
        { "the search box gone", [&] { Settings::showSearch.set(false); } },
        { "the bar hidden", [&] { Settings::barVisible.set(false), settle(); } },
        { "the bar torn down", [&] { controller_->tearDown(); } },
    };
    for (const auto& [what, act] : cases) {
        SCOPED_TRACE(what);
        for (const bool isShowing : { true, false }) {
            Settings::barVisible.set(true);
            Settings::barEdge.set(BarEdge::bottom);
            Settings::barSize.set(BarSize::medium);
            Settings::showSearch.set(true);
            settle();
            release(beside);
            view().mouseMoved({ notes });
            advance(isShowing ? delay : 0.2);
            EXPECT_EQ(shown(), isShowing ? "Notes" : "nothing");
            act();
            EXPECT_EQ(shown(), "nothing");
            advance(delay);
            EXPECT_EQ(shown(), "nothing");
        }
    }
}

TEST_F(HoverTest, BothRoadsHoverAndSetTheCursor)
{
    const CGPoint field = middleOf(view().searchFieldRect());
    movePointer(field);
    movePointer({ field.x + 1, field.y });
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::iBeam());
    movePointer(button("Notes"));
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::arrow());
    advance(delay);
    EXPECT_EQ(shown(), "Notes");
    view().cursorUpdate({ field });
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::iBeam());
    desktop().pointer().moveWithin({ 700, 500 }, true);
    view().mouseExited({});
    EXPECT_EQ(shown(), "nothing");
    EXPECT_EQ(view().hoveredIndex(), std::nullopt);

    press(button("Notes"));
    EXPECT_EQ(view().hoveredIndex(), 1) << "a press where no movement was told of";
    Settings::showSearch.set(false);
    movePointer({ view().searchFieldRect().midX(), 3 });
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::arrow()) << "no text to enter";
}

TEST_F(HoverTest, WhereThePointerIsntKnownThePreviewWatchesItself)
{
    desktop().pointer().conceal();
    const auto enter = [&] { content().mouseMoved({ { 20, 50 } }); };
    const auto leave = [&] { content().mouseExited({ { -1, 50 } }); };
    const struct {
        const char* what;
        std::function<void()> act;
        bool stays;
    } cases[] {
        { "leaving the bar", [] {}, false },
        { "crossing the gap", [&] { advance(0.2), enter(); }, true },
        { "and out again", [&] { enter(), advance(1), leave(); }, false },
        { "and back to the button", [&] { enter(), leave(), view().updateHover(button("Mail")); }, true },
        { "onto another button", [&] { enter(), leave(), view().updateHover(button("Notes")); }, false },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        view().updateHover({ 1300, 20 });
        hover(button("Mail"));
        view().mouseExited({});
        test.act();
        advance(0.4);
        EXPECT_EQ(preview().isShowing(), test.stays);
        EXPECT_EQ(content().hoveredCard().has_value(), content().holdsPointer());
    }
}

TEST_F(HoverTest, APressWithoutItsReleaseIsForgotten)
{
    const CGPoint mail = button("Mail");
    const CGPoint next = button("Notes");
    const std::function<void()> acts[] {
        [&] { view().rightMouseUp({ mail }), NSMenu::cancelTracking(); },
        [] { Settings::barVisible.set(false); },
        [] { Settings::barEdge.set(BarEdge::top); },
    };
    for (const auto& act : acts) {
        world().activate(world().processNamed("org.Notes")->pid());
        press(mail), drag(next);
        ASSERT_EQ(view().displayItems()[1].name, "Mail");
        act();
        settle();
        EXPECT_EQ(view().displayItems()[0].name, "Mail");
        calls().clear();
        drag(next), release(next);
        EXPECT_EQ(count("activate"), 0u) << "its release comes late";
        press(mail), release(mail);
        EXPECT_EQ(count("activate", mail_), 1u);
        EXPECT_EQ(Settings::appOrder(), AppOrder::dock);
        Settings::barVisible.set(true);
        settle();
    }
}

TEST_F(HoverTest, ThePointerTravelsIntoThePreviewAndOutOfIt)
{
    hover(button("Mail"));
    const CGRect panel = preview().frame();
    desktop().pointer().moveWithin({ button("Mail").x, panel.minY() - 4 }, true);
    view().mouseExited({});
    EXPECT_EQ(shown(), "preview") << "in the gap";
    for (const int card : { 0, 1 }) {
        movePointer({ card == 0 ? panel.minX() + 20 : panel.maxX() - 20, panel.midY() });
        EXPECT_EQ(content().hoveredCard(), card);
    }
    movePointer({ panel.maxX() + 1, panel.midY() });
    EXPECT_EQ(shown(), "nothing");
}

TEST_F(HoverTest, PanelsStayOnTheScreen)
{
    TooltipPanel tooltip;
    PreviewPanel preview;
    const auto windows = WindowIndex::byPID()->at(mail_);
    for (const bool isLeft : { true, false }) {
        const CGRect anchor { isLeft ? 0.0 : 1394.0, 0, 46, 52 };
        tooltip.show("A rather long text", anchor);
        preview.show(windows, "Mail", anchor);
        EXPECT_EQ(isLeft ? tooltip.frame().minX() : tooltip.frame().maxX(), isLeft ? 4 : 1436);
        EXPECT_EQ(tooltip.frame().minY(), 58);
        EXPECT_EQ(preview.frame(), (CGRect { isLeft ? 6.0 : 1054.0, 60, 380, 150 }));
    }
    preview.show({}, "Mail", {});
    EXPECT_FALSE(preview.isShowing());

    // 7 cards of 176 with 8 between them and 10 around them; letters of any width.
    const CGRect anchor { 700, 0, 46, 52 };
    preview.show(std::vector<WindowEntry>(200, windows.front()), "Mail", anchor);
    EXPECT_EQ(preview.frame(), (CGRect { 73, 60, 7 * 176 + 6 * 8 + 20, 150 }));
    tooltip.show(std::string(8000, 'w'), anchor);
    EXPECT_GE(tooltip.frame().minX(), 4);
    EXPECT_LE(tooltip.frame().maxX(), 1436);
    EXPECT_GT(tooltip.frame().width, 1400);
    EXPECT_TRUE(tooltip.label().text().ends_with("w…"));
}

TEST_F(HoverTest, CardsShowPicturesTitlesAndWhatIsMissing)
{
    world().faults().captureDelay = 0.1;
    hover(button("Mail"));
    EXPECT_EQ(cardsWith("Preview needs Screen Recording"), 2) << "nothing has been captured yet";
    advance(0.1);
    EXPECT_EQ(cardsWith("Preview needs Screen Recording"), 0);
    EXPECT_EQ(cardsWith("icon "), 2);
    EXPECT_EQ(cardsWith("Inbox"), 1);
    EXPECT_GE(cardsWith("Mail"), 1) << "the one without a title";
    // 240 by 180 fills the box by its width, 240 by 360 too.
    EXPECT_EQ(cardsWith("176x132"), 1);
    EXPECT_EQ(cardsWith("176x264"), 1);
}

TEST_F(HoverTest, AClickOnACardRaisesItsWindow)
{
    const auto clickCards = [&](double from, double to) {
        content().mouseDown({ { from, 100 } });
        content().mouseUp({ { to, 100 } });
        settle();
    };
    hover(button("Mail"));
    for (const double beside : { 200, 190 })
        clickCards(20, beside);
    content().mouseUp({ { 20, 100 } });
    EXPECT_EQ(shown(), "preview") << "another card, none, and a press that is forgotten";

    const double inbox = content().entries()[0].id == inbox_ ? 20 : 204;
    clickCards(inbox, inbox);
    EXPECT_EQ(shown(), "nothing");
    EXPECT_EQ(world().stack().front()->number, inbox_);
    EXPECT_EQ(logged("preview: picked"),
        (Texts { "preview: picked window " + std::to_string(inbox_) + " (Inbox) of pid " + std::to_string(mail_) }));

    view().updateHover({ 1300, 20 });
    hover(button("Mail"));
    const auto told = content().accessibilityChildren();
    const auto draft = std::ranges::find(told, "Mail", &NSAccessibilityElement::label);
    ASSERT_NE(draft, told.end()) << "the window without a title";
    EXPECT_EQ(draft->frame, PreviewView::cardRect(static_cast<int>(draft - told.begin())));
    draft->press();
    settle();
    EXPECT_EQ(world().stack().front()->number, draft_) << "as a screen reader does it";
    EXPECT_EQ(shown(), "nothing");

    view().updateHover({ 1300, 20 });
    hover(button("Mail"));
    world().quit(mail_);
    clickCards(20, 20);
    EXPECT_EQ(shown(), "nothing") << "its application has gone";
}

TEST_F(HoverTest, AThumbnailIsCapturedOnceAndAgainWhenItIsOld)
{
    const auto captures = [&] { return count("capture"); };
    int ready = 0;
    const auto ask = [&] { return Preview::thumbnail(inbox_, [&] { ++ready; }); };
    const auto openThumbnail = [&] {
        Preview::thumbnail(openWindow(mail_, { 0, 0, 300, 300 }), [] {});
        advance(0.1);
    };
    world().faults().captureDelay = 0.1;

    EXPECT_FALSE(ask());
    EXPECT_FALSE(ask());
    settle();
    EXPECT_FALSE(ask());
    EXPECT_EQ(captures(), 1u) << "one is on its way";
    advance(0.1);
    EXPECT_EQ(ready, 1);
    EXPECT_TRUE(Preview::isAvailable());
    const auto first = ask();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->size(), (CGSize { 240, 180 }));

    // What is old doesn't go by the time of day.
    clock.setBack(3600);
    advance(19.9);
    EXPECT_EQ(*ask(), *first);
    settle();
    EXPECT_EQ(captures(), 1u);
    advance(0.1);
    EXPECT_EQ(*ask(), *first) << "an old one is better than none";
    advance(0.1);
    EXPECT_EQ(captures(), 2u);
    EXPECT_FALSE(*ask() == *first);

    for (const auto& [bounds, size] : { std::pair { CGSize { 100, 300 }, CGSize { 100, 300 } },
             std::pair { CGSize { 1919.7, 1079.7 }, CGSize { 240, 134 } } }) {
        const auto window = openWindow(mail_, { 0, 0, bounds.width, bounds.height });
        Preview::thumbnail(window, [] {});
        advance(0.1);
        EXPECT_EQ(Preview::thumbnail(window, [] {})->size(), size);
    }

    world().setMinimised(inbox_, true);
    openThumbnail();
    EXPECT_TRUE(ask()) << "of a window that is there, if not to be seen";
    world().close(inbox_);
    openThumbnail();
    EXPECT_FALSE(ask()) << "nothing is kept of one that is no more";
}

TEST_F(HoverTest, ACaptureThatFailsLeavesAPlaceholder)
{
    world().faults().captureDelay = 0.1;
    const std::pair<const char*, std::function<void()>> cases[] {
        { "the user doesn't permit screen recording", [&] { world().setScreenCapturePermitted(false); } },
        { "the capture failed", [&] { world().windowFaults(inbox_).fails["capture"] = 1; } },
        { "there is no such window", [&] { settle(), world().close(inbox_); } },
        { nullptr, [] {} },
    };
    for (const auto& [reason, spoil] : cases) {
        log_.clear();
        bool isReady = false;
        Preview::thumbnail(inbox_, [&] { isReady = true; });
        spoil();
        advance(0.2);
        EXPECT_FALSE(isReady || Preview::isAvailable());
        EXPECT_EQ(logged("preview: "), reason ? Texts { std::string("preview: capture failed — ") + reason } : Texts());
        world().setScreenCapturePermitted(true);
    }
}

TEST_F(HoverTest, CheckingTellsWhetherCapturesWork)
{
    std::vector<bool> answers;
    const std::function<void()> changes[] { [] {}, [&] { world().setScreenCapturePermitted(false); },
        [&] { world().quit(mail_); } };
    for (const auto& change : changes) {
        change();
        settle();
        WindowIndex::invalidate();
        Preview::check([&](bool works) { answers.push_back(works); });
        settle();
    }
    EXPECT_EQ(answers, (std::vector<bool> { true, false, false }));
    EXPECT_EQ(logged("preview: capture available"),
        (Texts { "preview: capture available = true", "preview: capture available = false" }));
}
