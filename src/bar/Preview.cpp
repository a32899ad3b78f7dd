#include "bar/Preview.h"

#include "base/PerDesktop.h"
#include "capture/SCScreenshotManager.h"
#include "foundation/NSDate.h"
#include "log/Log.h"
#include "system/WindowIndex.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace {

constexpr double freshSeconds = 20.0;
/// Pixels; a narrower window isn't enlarged.
constexpr double greatestWidth = 240;

struct Thumbnail {
    NSImage image;
    NSDate taken;
};

struct State : std::enable_shared_from_this<State> {
    std::map<std::uint32_t, Thumbnail> cache;
    std::set<std::uint32_t> inFlight;
    bool isAvailable = false;
};

State& state()
{
    return perDesktop<State>();
}

using Completion = std::function<void(std::optional<NSImage>)>;

/// A length as a whole number that can be captured.
int whole(double length)
{
    return static_cast<int>(std::clamp(length, 2.0, 1e6));
}

SCStreamConfiguration configurationFor(const SCWindow& window)
{
    const int width = whole(window.frame().width);
    const int height = whole(window.frame().height);
    const double factor = std::min(greatestWidth / width, 1.0);
    SCStreamConfiguration configuration;
    configuration.setWidth(whole(factor * width));
    configuration.setHeight(whole(factor * height));
    return configuration;
}

void logFailure(const NSError& error)
{
    Log::debug("preview: capture failed — ", error.localizedDescription);
}

void captureImage(const SCWindow& window, const Completion& completion)
{
    const auto configuration = configurationFor(window);
    SCScreenshotManager::captureImage(SCContentFilter::desktopIndependentWindow(window), configuration,
        [=](const CGImage* image, const std::optional<NSError>& error) {
            if (error)
                logFailure(*error);
            if (!image)
                return completion(std::nullopt);
            const CGSize size { static_cast<double>(configuration.width()),
                static_cast<double>(configuration.height()) };
            completion(NSImage(*image, size));
        });
}

/// What was taken of windows that are no more.
void dropGone(const std::vector<SCWindow>& windows)
{
    if (windows.empty()) // There are always some; they couldn't be read.
        return;
    // Few are kept: a search for each is quicker than sorting all windows.
    std::erase_if(state().cache, [&](const auto& entry) {
        return std::ranges::find(windows, entry.first, &SCWindow::windowID) == windows.end();
    });
}

void capture(std::uint32_t windowID, const Completion& completion)
{
    SCShareableContent::getShareableContent(
        false, false, [=](const SCShareableContent* content, const std::optional<NSError>& error) {
            if (error)
                logFailure(*error);
            if (!content)
                return completion(std::nullopt);
            dropGone(content->windows());
            const auto window = std::ranges::find(content->windows(), windowID, &SCWindow::windowID);
            if (window == content->windows().end())
                return completion(std::nullopt);
            captureImage(*window, completion);
        });
}

void fetch(std::uint32_t windowID, std::function<void()> onReady)
{
    if (!state().inFlight.insert(windowID).second)
        return;
    capture(windowID,
        [windowID, onReady = std::move(onReady), weak = state().weak_from_this()](std::optional<NSImage> image) {
            const auto state = weak.lock();
            if (!state)
                return;
            state->inFlight.erase(windowID);
            state->isAvailable = image.has_value();
            if (!image)
                return;
            state->cache.insert_or_assign(windowID, Thumbnail { std::move(*image), NSDate::now() });
            onReady();
        });
}

}

std::optional<NSImage> Preview::thumbnail(std::uint32_t windowID, std::function<void()> onReady)
{
    const auto& cache = state().cache;
    const auto known = cache.find(windowID);
    const bool isFresh = known != cache.end() && NSDate::now().timeIntervalSince(known->second.taken) < freshSeconds;
    if (!isFresh)
        fetch(windowID, std::move(onReady));
    return known != cache.end() ? std::optional(known->second.image) : std::nullopt;
}

bool Preview::isAvailable()
{
    return state().isAvailable;
}

void Preview::check(std::function<void(bool)> completion)
{
    const auto windows = WindowIndex::all();
    if (windows.empty())
        return completion(false);
    capture(windows.front().id, [completion = std::move(completion)](const std::optional<NSImage>& image) {
        state().isAvailable = image.has_value();
        Log::debug("preview: capture available = ", image.has_value());
        completion(image.has_value());
    });
}
