#include "capture/SCShareableContent.h"

#include "base/PerDesktop.h"
#include "base/RunLoop.h"
#include "host/Capture.h"
#include "host/Desktop.h"
#include "windowserver/CGWindow.h"

#include <map>
#include <memory>
#include <utility>

namespace {

/// Those who asked in this turn, by what they asked for. A desktop that has gone answers nobody.
struct Askers : std::enable_shared_from_this<Askers> {
    std::map<unsigned, std::vector<SCShareableContent::CompletionHandler>> byOption;
};

std::vector<SCWindow> listedWindows(unsigned option)
{
    std::vector<SCWindow> windows;
    const auto list = CGWindowListCopyWindowInfo(option, 0);
    if (!list || !list->array())
        return windows;
    for (const Value& entry : *list->array()) {
        const Value* number = entry.find(kCGWindowNumber);
        const Value* bounds = entry.find(kCGWindowBounds);
        const auto windowID = number ? number->integer<std::uint32_t>() : std::nullopt;
        const auto frame = bounds ? CGRectMakeWithDictionaryRepresentation(*bounds) : std::nullopt;
        if (windowID && frame)
            windows.emplace_back(*windowID, *frame);
    }
    return windows;
}

}

void SCShareableContent::getShareableContent(
    bool excludingDesktopWindows, bool onScreenWindowsOnly, CompletionHandler completionHandler)
{
    const unsigned option = (onScreenWindowsOnly ? kCGWindowListOptionOnScreenOnly : kCGWindowListOptionAll)
        | (excludingDesktopWindows ? kCGWindowListExcludeDesktopElements : 0);
    auto& waiting = perDesktop<Askers>().byOption[option];
    waiting.push_back(std::move(completionHandler));
    if (waiting.size() > 1)
        return;
    RunLoop::main().perform([weak = perDesktop<Askers>().weak_from_this(), option] {
        const auto askers = weak.lock();
        if (!askers)
            return;
        const auto handlers = std::move(askers->byOption.extract(option).mapped());
        SCShareableContent content;
        std::optional<NSError> error;
        if (host::Desktop::current().capture().isPermitted())
            content.windows_ = listedWindows(option);
        else
            error = NSError { "the user doesn't permit screen recording" };
        for (const CompletionHandler& handler : handlers)
            handler(error ? nullptr : &content, error);
    });
}
