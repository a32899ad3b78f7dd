#include "diagnostics/CaptureProbe.h"

#include "bar/Preview.h"
#include "diagnostics/Report.h"
#include "diagnostics/TimeLimit.h"
#include "foundation/DispatchQueue.h"
#include "system/WindowIndex.h"
#include "windowserver/CGWindow.h"

#include <memory>

namespace {

/// How often it is looked whether more have come, in seconds, and how often in vain before no more are expected.
constexpr double interval = 0.1;
constexpr int mostInVain = 20;

void report(const std::string& text)
{
    Report::line("[capture] ", text);
}

/// The windows, and how many of their pictures have come.
struct Captures {
    std::vector<WindowEntry> windows = WindowIndex::all();
    std::size_t ready = 0;
    std::size_t readyBefore = 0;
    int inVain = 0;
    TimeLimit limit;
};

std::string size(const std::optional<NSImage>& picture)
{
    return picture ? Report::size(picture->size()) : "pending";
}

void reportAll(const Captures& captures)
{
    for (const WindowEntry& window : captures.windows)
        report(Report::nameOf(window.pid) + " \u2014 " + (window.title.empty() ? "untitled" : window.title) + ": "
            + size(Preview::thumbnail(window.id, [] {})));
    report("=== " + std::to_string(captures.ready) + " of " + std::to_string(captures.windows.size())
        + " windows captured ===");
}

void await(const std::shared_ptr<Captures>& captures, const std::function<void()>& completion)
{
    captures->inVain = captures->ready == captures->readyBefore ? captures->inVain + 1 : 0;
    captures->readyBefore = captures->ready;
    const bool isComplete = captures->ready == captures->windows.size();
    if (!isComplete && captures->inVain < mostInVain && !captures->limit.isOver())
        return DispatchQueue::main().asyncAfter(interval, [=] { await(captures, completion); });
    reportAll(*captures);
    completion();
}

void captureAll(const std::function<void()>& completion)
{
    const auto captures = std::make_shared<Captures>();
    for (const WindowEntry& window : captures->windows)
        if (Preview::thumbnail(window.id, [captures] { ++captures->ready; }))
            ++captures->ready;
    await(captures, completion);
}

}

void CaptureProbe::run(std::function<void()> completion)
{
    report("CGPreflightScreenCaptureAccess() = " + Report::flag(CGPreflightScreenCaptureAccess()));
    report("titles available (data check)    = " + Report::flag(WindowIndex::titlesAvailable()));
    Preview::check([completion = std::move(completion)](bool works) {
        report("ScreenCaptureKit capture works = " + Report::flag(works));
        captureAll(completion);
    });
}
