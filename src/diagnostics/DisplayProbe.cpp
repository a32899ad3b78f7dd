#include "diagnostics/DisplayProbe.h"

#include "diagnostics/Report.h"
#include "system/Displays.h"
#include "system/SpaceScanner.h"
#include "system/WindowIndex.h"

#include <string>

namespace {

void report(const std::string& text)
{
    Report::line("[display] ", text);
}

void reportDisplay(std::size_t index, const DisplayInfo& display)
{
    report("screen " + std::to_string(index));
    report("  frame        = " + Report::rect(display.frame()));
    report("  visibleFrame = " + Report::rect(display.screen.visibleFrame()));
    report("  cgs id       = " + display.cgsIdentifier.value_or("unresolved"));
    report("  active space = " + std::to_string(SpaceScanner::activeSpaceIDForDisplay(display.cgsIdentifier)));
}

void reportSpaces()
{
    std::string map;
    for (const auto& [display, space] : SpaceScanner::activeSpacesByDisplay())
        map += (map.empty() ? "" : ", ") + display + ": " + std::to_string(space);
    report("active spaces by display: [" + map + "]");
    report("system-wide active space: " + std::to_string(SpaceScanner::activeSpaceID()));
}

void reportWindow(const WindowEntry& window)
{
    const auto screen = Displays::screenContaining(window.bounds);
    const auto display = screen ? Displays::displayID(*screen) : std::nullopt;
    report(Report::nameOf(window.pid) + " " + Report::size(window.bounds) + " -> display "
        + (display ? std::to_string(*display) : "none"));
}

}

void DisplayProbe::run()
{
    const auto displays = Displays::all();
    report("NSScreen count = " + std::to_string(NSScreen::screens().size()));
    for (std::size_t i = 0; i < displays.size(); ++i)
        reportDisplay(i, displays[i]);
    reportSpaces();
    report("--- windows by screen ---");
    const auto windows = WindowIndex::all();
    for (const WindowEntry& window : windows)
        reportWindow(window);
    report("=== " + std::to_string(displays.size()) + " displays, " + std::to_string(windows.size()) + " windows ===");
}
