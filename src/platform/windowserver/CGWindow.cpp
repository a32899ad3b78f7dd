#include "windowserver/CGWindow.h"

#include "host/Capture.h"
#include "host/Desktop.h"
#include "host/Windows.h"

namespace {
host::Windows& windows()
{
    return host::Desktop::current().windows();
}
}

/// There is one window server, so any number names the connection to it.
CGSConnectionID CGSMainConnectionID()
{
    return 1;
}

std::uint64_t CGSGetActiveSpace(CGSConnectionID)
{
    return windows().activeSpace();
}

std::optional<std::uint64_t> CGSGetChangeCount(CGSConnectionID)
{
    return windows().changeCount();
}

std::optional<Value> CGSCopyManagedDisplaySpaces(CGSConnectionID)
{
    return windows().displaySpaces();
}

std::optional<Value> CGSCopySpacesForWindows(CGSConnectionID, unsigned, const Value& numbers)
{
    const Value::Array* array = numbers.array();
    const auto number = array && array->size() == 1 ? array->front().integer<std::uint32_t>() : std::nullopt;
    return number ? windows().spaces(*number) : std::nullopt;
}

std::optional<Value> CGWindowListCopyWindowInfo(unsigned option, std::uint32_t)
{
    return windows().list((option & kCGWindowListOptionOnScreenOnly) != 0);
}

bool CGPreflightScreenCaptureAccess()
{
    return host::Desktop::current().capture().isPermitted();
}

bool CGRequestScreenCaptureAccess()
{
    return host::Desktop::current().capture().requestPermission();
}
