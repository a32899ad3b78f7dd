#pragma once

#include "host/LoginItem.h"

namespace freedesktop {

/// The program's own autostart entry.
class LoginItem final : public host::LoginItem {
public:
    Status status() override;
    std::string registerItem() override;
    std::string unregisterItem() override;
};

}
