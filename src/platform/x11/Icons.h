#pragma once

#include "base/IconSource.h"
#include "x11/IconTheme.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace x11 {

/// The desktop's icons, one object for each picture.
class Icons {
public:
    using Handle = std::shared_ptr<const IconSource>;

    /// The theme's picture of that name, or the picture at a full path; null when there is none.
    Handle named(const std::string& name);
    /// For an application that has none of its own.
    Handle application() const { return application_; }
    /// A grid of dots, for the list of all applications.
    Handle allApplications() const { return allApplications_; }

private:
    IconTheme theme_;
    std::unordered_map<std::string, Handle> known_;
    Handle application_ = builtIn(applicationSvg);
    Handle allApplications_ = builtIn(allApplicationsSvg);

    static Handle builtIn(const char* svg);
    static const char* const applicationSvg;
    static const char* const allApplicationsSvg;
};

}
