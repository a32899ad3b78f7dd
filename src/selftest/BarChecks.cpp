#include "appkit/NSBitmapImageRep.h"
#include "bar/BarController.h"
#include "bar/PreviewPanel.h"
#include "selftest/Checks.h"
#include "selftest/Groups.h"
#include "settings/Settings.h"
#include "tamer/TargetGeometry.h"

#include <algorithm>

namespace {

using SelfTest::check;

/// Whether anything is painted along its middle.
bool paints(NSView& view)
{
    const NSBitmapImageRep picture(view);
    for (int x = 0; x < picture.pixelsWide(); x += 16)
        if (picture.alphaAt(x, picture.pixelsHigh() / 2) > 0.01)
            return true;
    return false;
}

void checkStyle(BarStyle style)
{
    Settings::barStyle.set(style);
    const std::string name(rawValue(style));
    const auto vibrancy = std::make_shared<NSVisualEffectView>(CGRect {});
    const auto [container, view] = BarController::makeContentStack({ 1200, 60 }, vibrancy);
    check(name + ": the container is not hidden", !container->isHidden());
    check(name + ": the bar is a subview of the container",
        std::ranges::find(container->subviews(), view) != container->subviews().end());
    check(name + ": the bar actually paints something", paints(*container));
}

/// With the bar at the bottom, whose target this is.
void checkLifting()
{
    constexpr CGRect target { 0, 0, 1710, 1039 };
    Settings::barEdge.set(BarEdge::bottom);
    const CGRect alert { 1278, 929, 400, 146 };
    const auto lifted = WindowTamer::clearedFrame(alert, target);
    check("an alert overlapping the bar is lifted", lifted && lifted->y < alert.y);
    check("it is lifted exactly clear, not further", lifted && lifted->y + lifted->height == target.height);
    check("lifting does not resize it", lifted && lifted->size() == alert.size());
    check("lifting does not move it sideways", lifted && lifted->x == alert.x);
    check("an alert that already clears the bar is left alone",
        !WindowTamer::clearedFrame({ 1278, 400, 400, 146 }, target));

    const auto cleared = WindowTamer::clearedFrame({ 1278, 200, 400, 1100 }, target);
    check("an alert too tall to lift is still cleared", cleared.has_value());
    const auto moved = WindowTamer::clearedFrame({ 1278, 200, 400, 900 }, target);
    check("one that does fit is moved, not shrunk", moved && moved->y == 139 && moved->height == 900);
    check("it is shrunk to the space available", cleared && cleared->height == target.height);
    check("and its foot ends at the bar", cleared && cleared->y + cleared->height == target.height);
    check("and its top is on screen", cleared && cleared->y >= 0);
}

/// With the bar at the top, whose target this is.
void checkPushing()
{
    constexpr CGRect target { 0, 100, 1710, 1007 };
    Settings::barEdge.set(BarEdge::top);
    const auto pushed = WindowTamer::clearedFrame({ 0, 40, 400, 146 }, target);
    check("with the bar on top, an alert under it is pushed down", pushed && pushed->y == target.y);
    check("with the bar on top, an alert below it is left alone",
        !WindowTamer::clearedFrame({ 0, 500, 400, 146 }, target));
    Settings::barEdge.set(BarEdge::bottom);
}

bool isPicked(CGPoint point, std::optional<int> card)
{
    return PreviewView::card(point, 2) == card;
}

CGPoint middle(const CGRect& rect)
{
    return { rect.x + rect.width / 2, rect.y + rect.height / 2 };
}

}

void SelfTest::appearance()
{
    for (const BarStyle style : allCases<BarStyle>())
        checkStyle(style);
    Settings::barStyle.set(BarStyle::solid);
}

void SelfTest::windowPreviews()
{
    const CGRect anchor { 500, 0, 44, 63 };
    const CGRect panel { 420, 71, 200, 140 };
    const CGRect zone = PreviewPanel::hitZone(anchor, panel);
    check("the hit zone covers the button", CGRectContainsPoint(zone, { 520, 30 }));
    check("the hit zone covers the panel", CGRectContainsPoint(zone, middle(panel)));
    check("the hit zone bridges the gap between them", CGRectContainsPoint(zone, { 520, 67 }));

    const CGRect first = PreviewView::cardRect(0);
    check("a point on the first card picks it", isPicked(middle(first), 0));
    check("a point on the second card picks it", isPicked(middle(PreviewView::cardRect(1)), 1));
    check(
        "the gap between cards picks neither", isPicked({ first.x + first.width + 4, middle(first).y }, std::nullopt));
    check("a card beyond the window count is not hit", isPicked(middle(PreviewView::cardRect(2)), std::nullopt));
}

void SelfTest::alertClearance()
{
    checkLifting();
    checkPushing();
}

void SelfTest::dragLayout()
{
    constexpr std::size_t count = 6;
    BarView view({ 0, 0, 1400, 63 });
    std::vector<BarItem> items(count);
    for (std::size_t index = 0; index < count; ++index)
        items[index].name = "Item " + std::to_string(index);
    view.setItems(items);
    check("layout terminates while dragging", view.layoutCountDuringDrag(0, -1'000'000) == count);
    bool keepsAll = true;
    for (int x = -400; x <= 2000; x += 60)
        keepsAll = keepsAll && view.layoutCountDuringDrag(2, x) == count;
    check("dragging anywhere keeps every button", keepsAll);
}
