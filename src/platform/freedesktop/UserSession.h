#pragma once

#include "freedesktop/PortalAppearance.h"
#include "host/Session.h"

namespace freedesktop {

class UserSession final : public host::Session {
public:
    explicit UserSession(LastingBus& bus);
    std::string preferencesFolder() override;
    std::string homeFolder() override;
    std::string locate(const std::string& path) override;
    void removeStandIns() override;
    bool throwAway(const std::string& path) override;
    std::optional<std::uint32_t> accentColor() override { return appearance_.accentColor(); }

private:
    PortalAppearance appearance_;
    std::string preferencesFolder_;
};

}
