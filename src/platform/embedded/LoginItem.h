#pragma once

#include "embedded/FaultBox.h"
#include "embedded/World.h"
#include "host/LoginItem.h"

namespace embedded {

/// The list of what starts at login, with this program on it or not. Main thread.
class LoginItem final : public host::LoginItem {
public:
    explicit LoginItem(World& world)
        : world_(world)
    {
    }

    Status status() override { return world_.loginItem(); }

    std::string registerItem() override { return set(Status::enabled, "register"); }

    std::string unregisterItem() override
    {
        if (status() == Status::notRegistered)
            return "there is no such login item";
        return set(Status::notRegistered, "unregister");
    }

private:
    std::string set(Status status, const char* request)
    {
        if (takeFailure(world_.faults().failingLoginItem, request))
            return "Operation not permitted";
        world_.setLoginItem(status);
        return {};
    }

    World& world_;
};

}
