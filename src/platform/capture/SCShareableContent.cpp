#include "capture/SCShareableContent.h"

#include "base/RunLoop.h"
#include "host/Capture.h"
#include "host/Desktop.h"
#include "windowserver/CGWindow.h"

#include <memory>
#include <utility>

namespace {

/// Those who asked in the same way in this turn. The block that will answer them owns it.
struct Askers {
    unsigned option;
    std::vector<SCShareableContent::CompletionHandler> handlers;
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
    static std::weak_ptr<Askers> last;
    if (const auto askers = last.lock(); askers && askers->option == option) {
        askers->handlers.push_back(std::move(completionHandler));
        return;
    }
    auto askers = std::make_shared<Askers>(Askers { option, { std::move(completionHandler) } });
    last = askers;
    RunLoop::main().perform([askers = std::move(askers)] {
        last.reset();
        SCShareableContent content;
        std::optional<NSError> error;
        if (host::Desktop::current().capture().isPermitted())
            content.windows_ = listedWindows(askers->option);
        else
            error = NSError { "the user doesn't permit screen recording" };
        for (const CompletionHandler& handler : askers->handlers)
            handler(error ? nullptr : &content, error);
    });
}
