#include "foundation/NSUserDefaults.h"
#include "look/Appearance.h"
#include "look/HexColor.h"
#include "look/Metrics.h"
#include "selftest/Checks.h"
#include "selftest/Groups.h"
#include "settings/Settings.h"
#include "tamer/TargetGeometry.h"

#include <algorithm>
#include <utility>

namespace {

using SelfTest::check;
using SelfTest::checkRoundTrips;

/// Of a screen of ordinary size, what is left to windows is higher than that.
constexpr double leastRoom = 200;

void checkSizes()
{
    const Metrics small(BarSize::small);
    const Metrics large(BarSize::large);
    check(SelfTest::compared("bar height grows with size", small.barHeight(), "->", large.barHeight()),
        small.barHeight() < large.barHeight());
    check("icon size grows with size", small.iconSize() < large.iconSize());
    check("window gap is a fixed 5pt", Metrics::windowGap == 5);
}

void checkTargets()
{
    Settings::barEdge.set(BarEdge::bottom);
    const auto bottom = WindowTamer::targetRect();
    Settings::barEdge.set(BarEdge::top);
    const auto top = WindowTamer::targetRect();
    if (!bottom || !top)
        return SelfTest::skip("there is no screen");
    check("bottom bar reserves the bottom of the screen", bottom->y < top->y);
    check("top bar pushes windows down", top->y >= Metrics::current().barHeight());
    check("both leave room for windows", bottom->height > leastRoom && top->height > leastRoom);
}

void checkComponents()
{
    using Order = std::vector<BarComponent>;
    const auto cases = allCases<BarComponent>();
    NSUserDefaults::standard().removeObjectForKey("componentOrder");
    const Order standard = Settings::componentOrder();
    check("default layout is the documented order", std::ranges::equal(standard, cases));

    Order swapped = standard;
    std::swap(swapped[0], swapped[1]);
    Settings::componentOrder.set(swapped);
    check("layout order round-trips", Settings::componentOrder() == swapped);
    check("no component is lost when reordering", std::ranges::is_permutation(Settings::componentOrder(), cases));

    NSUserDefaults::standard().setObject(Value::Array { "apps", "trash" }, "componentOrder");
    check("components missing from a saved order are appended",
        std::ranges::is_permutation(Settings::componentOrder(), cases));
}

void checkColors()
{
    Settings::barOpacity.set(0.1);
    check("opacity is clamped at the bottom", Settings::barOpacity() == 0.5);
    Settings::barOpacity.set(5);
    check("opacity is clamped at the top", Settings::barOpacity() == 1);

    Settings::barTintHex.set("FF8800");
    check("tint colour round-trips", HexColor::hexString(Appearance::tint()) == "FF8800");
    Settings::barTintHex.set("not a colour");
    check("a corrupt colour falls back rather than drawing something odd",
        !HexColor::hexString(Appearance::tint()).empty());
    Settings::barTintHex.set("1A1C22");
    Settings::accentHex.set("");
    check("empty accent follows the system", Appearance::accent() == NSColor::controlAccentColor());
}

}

void SelfTest::settingsPersistence()
{
    checkRoundTrips<BarSize>("barSize", Settings::barSize);
    checkRoundTrips<AppOrder>("appOrder", Settings::appOrder);
    checkRoundTrips<WindowGrouping>("grouping", Settings::grouping);
    for (const bool shows : { false, true }) {
        Settings::showTrash.set(shows);
        check(std::string("showTrash persists ") + (shows ? "true" : "false"), Settings::showTrash() == shows);
    }
    const std::vector<std::string> order { "org.example.second", "org.example.first" };
    Settings::manualOrder.set(order);
    check("manualOrder round-trips an array", Settings::manualOrder() == order);
}

void SelfTest::geometry()
{
    checkSizes();
    checkTargets();
    checkComponents();
    checkRoundTrips<BarStyle>("barStyle", Settings::barStyle);
    Settings::barStyle.set(BarStyle::solid);
    checkColors();
    checkRoundTrips<BarEdge>("barEdge", Settings::barEdge);
    Settings::barEdge.set(BarEdge::bottom);
}
