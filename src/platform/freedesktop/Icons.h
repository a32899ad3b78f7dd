#pragma once

#include "base/IconSource.h"
#include "freedesktop/IconTheme.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace freedesktop {

/// The desktop's icons, one object for each picture.
class Icons {
public:
    using Handle = std::shared_ptr<const IconSource>;

    /// The theme's picture of that name, or the picture at a full path; null when there is none.
    Handle named(const std::string& name);
    /// The same picture, else that of applications without one; where the name is new it is looked for only when it is
    /// painted. A theme can take a while to search, and hardly any of a long list is ever seen.
    Handle ofApplication(const std::string& name);
    /// For an application that has none of its own.
    Handle application() const { return application_; }
    /// A grid of dots, for the list of all applications.
    Handle allApplications() const { return allApplications_; }

private:
    std::shared_ptr<IconTheme> theme_ = std::make_shared<IconTheme>();
    std::unordered_map<std::string, Handle> known_;
    /// Those that haven't been looked for when they were handed out.
    std::unordered_map<std::string, Handle> deferred_;
    Handle application_ = builtIn(applicationSvg);
    Handle allApplications_ = builtIn(allApplicationsSvg);

    static Handle builtIn(const char* svg);
    static const char* const applicationSvg;
    static const char* const allApplicationsSvg;
};

}
