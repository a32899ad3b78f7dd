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

private:
    explicit NSBundle(std::optional<std::string> identifier)
        : identifier_(std::move(identifier))
    {
    }

    std::optional<std::string> identifier_;
};
