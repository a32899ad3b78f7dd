#include "capture/SCScreenshotManager.h"

#include "host/Capture.h"
#include "host/Desktop.h"

#include <utility>

bool SCScreenshotManager::isSupported()
{
    return host::Desktop::current().capture().isSupported();
}

void SCScreenshotManager::captureImage(
    const SCContentFilter& filter, const SCStreamConfiguration& configuration, CompletionHandler completionHandler)
{
    const int width = configuration.width();
    const int height = configuration.height();
    auto finish = [width, height, handler = std::move(completionHandler)](host::Captured captured) {
        if (!captured.picture)
            return handler(nullptr, NSError { std::move(captured.error) });
        const CGImage image { width, height, std::move(captured.picture) };
        handler(&image, std::nullopt);
    };
    host::Desktop::current().capture().capture(filter.windowID(), width, height, std::move(finish));
}
