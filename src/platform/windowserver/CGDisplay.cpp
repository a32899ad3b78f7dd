#include "windowserver/CGDisplay.h"

#include "host/Desktop.h"
#include "host/Displays.h"

std::optional<std::string> CGDisplayCreateUUIDFromDisplayID(std::uint32_t displayID)
{
    for (const host::Display& display : host::Desktop::current().displays().all())
        if (display.number == displayID)
            return display.uuid;
    return std::nullopt;
}
