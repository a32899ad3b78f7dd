#pragma once

#include "foundation/NSURL.h"

#include <optional>
#include <string>

/// An application's bundle.
class NSBundle {
public:
    /// The program's own.
    static NSBundle mainBundle();
    /// Absent when no bundle loads there.
    static std::optional<NSBundle> initWithURL(const NSURL& url);

    const std::optional<std::string>& bundleIdentifier() const { return identifier_; }
    /// Where it is. A desktop that doesn't know where its programs are has an empty path.
    const NSURL& bundleURL() const { return url_; }

private:
    NSBundle(std::optional<std::string> identifier, NSURL url)
        : identifier_(std::move(identifier))
        , url_(std::move(url))
    {
    }

    std::optional<std::string> identifier_;
    NSURL url_;
};
