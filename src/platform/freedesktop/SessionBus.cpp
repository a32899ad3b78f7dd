#include "freedesktop/SessionBus.h"

#include <glib.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace freedesktop {

bool hasSessionBus()
{
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    std::error_code error;
    return std::filesystem::exists(std::string(g_get_user_runtime_dir()) + "/bus", error);
}

}
