#include "ModelTest.h"

#include "appkit/DrawingList.h"
#include "bar/BarController.h"
#include "bar/Preview.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "host/Displays.h"
#include "settings/Settings.h"
#include "unit/DrawingText.h"

#include <algorithm>
#include <memory>

namespace {

constexpr double delay = 0.45;

/// A bar of medium size, 52 points, at the bottom of a display of 1440 by 900, with the buttons of "Mail", which has
/// two windows, and "Notes", which has none.
class HoverTest : public ModelTest {
protected:
    void describe() override { desk.trash({ "letter.txt" }); }

    void SetUp() override
    {
        ModelTest::SetUp();
        Preview::reset();
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

    void TearDown() override
    {
        controller_.reset();
        Preview::reset();
        ModelTest::TearDown();
    }

    BarView& view() { return *controller_->view(); }
    const TooltipPanel& tooltip() { return view().tooltip(); }
    const PreviewPanel& preview() { return view().preview(); }
    CGPoint middle(BarComponent component)
    {
        const CGRect rect = view().rect(component);
        return { rect.midX(), rect.midY() };
    }
    CGPoint button(const std::string& name)
    {
        for (const auto& item : view().layoutItems())
            if (item.item.name == name)
                return { item.rect.midX(), item.rect.midY() };
        ADD_FAILURE() << name << " has no button";
        return {};
    }

    /// By the view's own tracking, then until what is to come shows.
    void hover(CGPoint point)
    {
        view().mouseMoved({ point });
        advance(delay);
    }

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

    std::vector<std::string> cards() { return described(preview().content()->record()); }
    bool hasCardText(const std::string& text)
    {
        return std::ranges::any_of(
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
}

TEST_F(HoverTest, AButtonOfOneWindowHasATooltip)
{
    Settings::grouping.set(WindowGrouping::never);
    settle();
    hover(button("Mail"));
    EXPECT_EQ(shown(), "Mail");
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
    EXPECT_EQ(shown(), "nothing");
    advance(0.44);
    EXPECT_EQ(shown(), "nothing");
    advance(0.01);
    EXPECT_EQ(shown(), "Trash");
}

TEST_F(HoverTest, WhatEndsATooltipEndsOneToComeToo)
{
    const CGPoint notes = button("Notes");
    const struct {
        const char* what;
        std::function<void()> act;
    } cases[] {
        { "a release",
            [&] {
                view().mouseUp({ { 1300, 20 } });
            } },
        { "the start of a drag",
            [&] {
                view().mouseDown({ notes });
                view().mouseDragged({ { notes.x + 6, notes.y } });
            } },
        { "leaving",
            [&] {
                movePointer({ 700, 600 });
            } },
        { "the bar hidden", [&] { Settings::barVisible.set(false), settle(); } },
        { "the bar torn down", [&] { controller_->tearDown(); } },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        for (const bool isShowing : { true, false }) {
            Settings::barVisible.set(true);
            settle();
            view().mouseUp({ { 1300, 20 } });
            view().updateHover({ 1300, 20 });
            view().mouseMoved({ notes });
            advance(isShowing ? delay : 0.2);
            EXPECT_EQ(shown(), isShowing ? "Notes" : "nothing");
            test.act();
            EXPECT_EQ(shown(), "nothing");
            advance(delay);
            EXPECT_EQ(shown(), "nothing");
        }
    }
}

TEST_F(HoverTest, BothRoadsHoverAndSetTheCursor)
{
    const CGPoint field { view().searchFieldRect().midX(), view().searchFieldRect().midY() };
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
}

TEST_F(HoverTest, ThePointerTravelsIntoThePreviewAndOutOfIt)
{
    for (const BarEdge edge : { BarEdge::bottom, BarEdge::top }) {
        SCOPED_TRACE(isTop(edge) ? "top" : "bottom");
        Settings::barEdge.set(edge);
        settle();
        hover(button("Mail"));
        ASSERT_EQ(shown(), "preview");
        const CGRect panel = preview().frame();
        const CGRect bar = controller_->window().frame();
        EXPECT_EQ(isTop(edge) ? bar.minY() - panel.maxY() : panel.minY() - bar.maxY(), 8);
        const CGPoint gap { bar.x + button("Mail").x, isTop(edge) ? bar.minY() - 4 : bar.maxY() + 4 };

        desktop().pointer().moveWithin(gap, true);
        view().mouseExited({});
        EXPECT_EQ(shown(), "preview") << "in the gap";
        movePointer({ panel.minX() + 20, panel.midY() });
        EXPECT_EQ(preview().content()->hoveredCard(), 0);
        EXPECT_EQ(NSCursor::currentCursor(), NSCursor::pointingHand());
        movePointer({ panel.maxX() - 20, panel.midY() });
        EXPECT_EQ(preview().content()->hoveredCard(), 1);
        EXPECT_TRUE(logged("preview: dismissed").empty());

        movePointer({ panel.maxX() + 1, panel.midY() });
        EXPECT_EQ(shown(), "nothing");
        EXPECT_EQ(NSCursor::currentCursor(), NSCursor::arrow());
        EXPECT_EQ(logged("preview: dismissed").size(), 1u);
        log_.clear();
    }
}

TEST_F(HoverTest, PanelsStayOnTheScreen)
{
    TooltipPanel tooltip;
    PreviewPanel preview;
    const auto windows = WindowIndex::byPID()->at(mail_);
    const struct {
        const char* what;
        CGRect anchor;
        double tooltipX, previewX;
    } cases[] {
        { "left", { 0, 0, 46, 52 }, 4, 6 },
        { "right", { 1394, 0, 46, 52 }, 1436, 1434 },
    };
    for (const auto& test : cases) {
        tooltip.show("A rather long text", test.anchor);
        preview.show(windows, "Mail", test.anchor);
        EXPECT_EQ(preview.frame().size(), (CGSize { 380, 150 }));
        const bool isLeft = test.anchor.x == 0;
        EXPECT_EQ(isLeft ? tooltip.frame().minX() : tooltip.frame().maxX(), test.tooltipX) << test.what;
        EXPECT_EQ(isLeft ? preview.frame().minX() : preview.frame().maxX(), test.previewX) << test.what;
        EXPECT_EQ(tooltip.frame().minY(), 58);
        EXPECT_EQ(preview.frame().minY(), 60);
    }
    preview.show({}, "Mail", cases[0].anchor);
    EXPECT_FALSE(preview.isShowing());
}

TEST_F(HoverTest, CardsAndHitZonesHoldWhatTheyShould)
{
    EXPECT_EQ(PreviewView::card({ 20, 20 }, 2), 0);
    EXPECT_EQ(PreviewView::card({ 200, 20 }, 2), 1);
    EXPECT_EQ(PreviewView::card({ 190, 20 }, 2), std::nullopt) << "between them";
    EXPECT_EQ(PreviewView::card({ 200, 20 }, 1), std::nullopt) << "where a second one would be";
    const CGRect zone = PreviewPanel::hitZone({ 500, 0, 44, 63 }, { 420, 71, 200, 140 });
    for (const CGPoint point : { CGPoint { 520, 30 }, CGPoint { 520, 140 }, CGPoint { 520, 67 } })
        EXPECT_TRUE(CGRectContainsPoint(zone, point)) << point.y;
}

TEST_F(HoverTest, CardsShowPicturesTitlesAndWhatIsMissing)
{
    world().faults().captureDelay = 0.1;
    hover(button("Mail"));
    EXPECT_TRUE(hasCardText("Preview needs Screen Recording")) << "nothing has been captured yet";
    advance(0.1);
    const auto lines = cards();
    EXPECT_FALSE(hasCardText("Preview needs Screen Recording"));
    EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.starts_with("icon "); }), 2);
    EXPECT_TRUE(hasCardText("Inbox"));
    EXPECT_TRUE(hasCardText("Mail")) << "the one without a title";
    // 240 by 180 fills the box by its width, 240 by 360 too.
    EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) { return line.find("176x132") != std::string::npos; }));
    EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) { return line.find("176x264") != std::string::npos; }));
}

TEST_F(HoverTest, AClickOnACardRaisesItsWindow)
{
    const auto press = [&](double x) { preview().content()->mouseDown({ { x, 100 } }); };
    const auto release = [&](double x) { preview().content()->mouseUp({ { x, 100 } }); };
    hover(button("Mail"));
    press(20);
    release(200);
    EXPECT_EQ(shown(), "preview") << "another card";
    press(20);
    release(190);
    EXPECT_EQ(shown(), "preview") << "beside the cards";
    release(20);
    EXPECT_EQ(shown(), "preview") << "the press is forgotten";

    const auto inbox = preview().content()->entries()[0].id == inbox_ ? 0 : 1;
    press(20 + inbox * 184);
    release(20 + inbox * 184);
    EXPECT_EQ(shown(), "nothing");
    settle();
    EXPECT_EQ(world().stack().front()->number, inbox_);
    EXPECT_EQ(logged("preview: picked"),
        (Texts { "preview: picked window " + std::to_string(inbox_) + " (Inbox) of pid " + std::to_string(mail_) }));

    view().updateHover({ 1300, 20 });
    hover(button("Mail"));
    world().quit(mail_);
    press(20);
    release(20);
    settle();
    EXPECT_EQ(shown(), "nothing") << "its application has gone";
}

TEST_F(HoverTest, AThumbnailIsCapturedOnceAndAgainWhenItIsOld)
{
    const auto captures = [&] { return count("capture"); };
    int ready = 0;
    const auto ask = [&] { return Preview::thumbnail(inbox_, [&] { ++ready; }); };
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

    advance(19.9);
    EXPECT_EQ(*ask(), *first);
    settle();
    EXPECT_EQ(captures(), 1u);
    advance(0.1);
    EXPECT_EQ(*ask(), *first) << "an old one is better than none";
    advance(0.1);
    EXPECT_EQ(captures(), 2u);
    EXPECT_FALSE(*ask() == *first);
}

TEST_F(HoverTest, ACaptureThatFailsLeavesAPlaceholder)
{
    const struct {
        const char* what;
        std::function<void()> spoil;
        Texts log;
    } cases[] {
        { "without permission", [&] { world().setScreenCapturePermitted(false); },
            { "preview: capture failed — the user doesn't permit screen recording" } },
        { "once", [&] { world().windowFaults(inbox_).fails["capture"] = 1; },
            { "preview: capture failed — the capture failed" } },
        { "closed while it runs",
            [&] {
                world().faults().captureDelay = 0.1;
                settle();
                world().close(inbox_);
            },
            { "preview: capture failed — there is no such window" } },
        { "closed before", [] {}, {} },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        log_.clear();
        bool isReady = false;
        if (std::string_view(test.what) != "closed while it runs")
            test.spoil();
        EXPECT_FALSE(Preview::thumbnail(inbox_, [&] { isReady = true; }));
        if (std::string_view(test.what) == "closed while it runs")
            test.spoil();
        advance(0.2);
        EXPECT_FALSE(isReady);
        EXPECT_FALSE(Preview::isAvailable());
        EXPECT_EQ(logged("preview: "), test.log);
        world().setScreenCapturePermitted(true);
    }
}

TEST_F(HoverTest, WindowsAreCapturedAtMost240PixelsWide)
{
    const struct {
        CGRect bounds;
        CGSize size;
    } cases[] {
        { { 0, 0, 100, 300 }, { 100, 300 } },
        { { 0, 0, 2000, 1000 }, { 240, 120 } },
        { { 0, 0, 1919.7, 1079.7 }, { 240, 134 } },
        { { 0, 0, 5000, 10 }, { 240, 2 } },
    };
    for (const auto& test : cases) {
        const auto window = openWindow(mail_, test.bounds);
        Preview::thumbnail(window, [] {});
        settle();
        const auto image = Preview::thumbnail(window, [] {});
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), test.size);
    }
}

TEST_F(HoverTest, CheckingTellsWhetherCapturesWork)
{
    std::vector<bool> answers;
    const auto check = [&] {
        WindowIndex::invalidate();
        Preview::check([&](bool works) { answers.push_back(works); });
        settle();
    };
    check();
    world().setScreenCapturePermitted(false);
    check();
    world().quit(mail_);
    settle();
    check();
    EXPECT_EQ(answers, (std::vector<bool> { true, false, false }));
    EXPECT_EQ(logged("preview: capture available"),
        (Texts { "preview: capture available = true", "preview: capture available = false" }));
}
