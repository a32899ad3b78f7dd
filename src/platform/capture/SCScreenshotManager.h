#pragma once

#include "capture/SCShareableContent.h"

#include <memory>

struct IconSource;

/// A captured picture, in pixels.
struct CGImage {
    int width = 0;
    int height = 0;
    std::shared_ptr<const IconSource> content;
};

/// The size of a capture, in pixels. The pointer is never in it.
class SCStreamConfiguration {
public:
    void setWidth(int width) { width_ = width; }
    void setHeight(int height) { height_ = height; }

    int width() const { return width_; }
    int height() const { return height_; }

private:
    int width_ = 1;
    int height_ = 1;
};

/// What is captured: one window, whatever lies over it.
class SCContentFilter {
public:
    static SCContentFilter desktopIndependentWindow(const SCWindow& window)
    {
        return SCContentFilter(window.windowID());
    }

    std::uint32_t windowID() const { return windowID_; }

private:
    explicit SCContentFilter(std::uint32_t windowID)
        : windowID_(windowID)
    {
    }

    std::uint32_t windowID_;
};

namespace SCScreenshotManager {

/// Whether the desktop can give pictures of windows at all, whatever the user permits.
bool isSupported();

using CompletionHandler = std::function<void(const CGImage*, const std::optional<NSError>&)>;

/// Captures off the main thread and calls the handler on the main run loop, with the image or else an error. Main
/// thread.
void captureImage(
    const SCContentFilter& filter, const SCStreamConfiguration& configuration, CompletionHandler completionHandler);

}
