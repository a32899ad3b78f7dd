#include "appkit/NSScreen.h"

#include "host/Desktop.h"
#include "host/Displays.h"

const char* const NSApplicationDidChangeScreenParametersNotification
    = "NSApplicationDidChangeScreenParametersNotification";

NSScreen screenOf(std::size_t index)
{
    const host::Display& display = host::Desktop::current().displays().all()[index];
    NSScreen screen;
    screen.index_ = index;
    screen.frame_ = display.frame;
    screen.visibleFrame_ = display.visibleFrame;
    if (display.number)
        screen.deviceDescription_.set("NSScreenNumber", *display.number);
    return screen;
}

std::vector<NSScreen> NSScreen::screens()
{
    std::vector<NSScreen> screens;
    for (std::size_t i = 0; i < host::Desktop::current().displays().all().size(); ++i)
        screens.push_back(screenOf(i));
    return screens;
}

std::optional<NSScreen> NSScreen::mainScreen()
{
    const auto index = host::Desktop::current().displays().main();
    return index ? std::optional(screenOf(*index)) : std::nullopt;
}
