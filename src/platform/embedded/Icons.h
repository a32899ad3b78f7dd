#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

struct IconSource;

namespace embedded {

/// The icons of applications: one object for one picture. Main thread.
class Icons {
public:
    /// A bundled icon by its name ("mail"), or a picture by its full path; the general icon for a name that isn't
    /// bundled, null for none.
    std::shared_ptr<const IconSource> find(const std::optional<std::string>& name);
    /// The icon of an application that has none of its own.
    std::shared_ptr<const IconSource> general();

private:
    std::map<std::string, std::shared_ptr<const IconSource>> icons_;
};

}
