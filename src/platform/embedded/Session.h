#pragma once

#include "embedded/Scenario.h"
#include "host/Session.h"

#include <string>

namespace embedded {

/// The user's session, in real files under one folder: "Preferences", "Home" with its ".Trash", and the folders of the
/// installed applications. Main thread.
class Session final : public host::Session {
public:
    /// Makes what isn't there yet.
    Session(std::string root, const Scenario& scenario);

    const std::string& folder() const { return root_; }
    std::string preferencesFolder() override { return root_ + "/Preferences"; }
    std::string homeFolder() override { return root_ + "/Home"; }
    std::string locate(const std::string& path) override;
    bool throwAway(const std::string& path) override;
    std::optional<std::uint32_t> accentColor() override { return accentColor_; }
    void setAccentColor(std::optional<std::uint32_t> color) { accentColor_ = color; }

    std::string preferenceFile(const std::string& domain);
    /// Makes the folder of an installed application.
    void makeBundle(const std::string& path);

private:
    void seedTrackpad();
    void makeTrash(const std::vector<std::string>& names);

    std::string root_;
    std::optional<std::uint32_t> accentColor_;
};

}
