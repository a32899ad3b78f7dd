#pragma once

#include "host/Session.h"

namespace freedesktop {

class UserSession final : public host::Session {
public:
    std::string preferencesFolder() override;
    std::string homeFolder() override;
    std::string locate(const std::string& path) override;
    /// No setting of it is common to X11 desktops.
    std::optional<std::uint32_t> accentColor() override { return std::nullopt; }

private:
    std::string preferencesFolder_;
};

}
