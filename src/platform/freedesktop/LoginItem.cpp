#include "freedesktop/LoginItem.h"

#include "freedesktop/Autostart.h"
#include "freedesktop/OwnPrograms.h"

#include <unistd.h>

namespace freedesktop {
namespace {

constexpr const char* identifier = "com.merrowen.vantry";

}

LoginItem::Status LoginItem::status()
{
    const auto entry = Autostart::read(identifier);
    if (!entry)
        return Status::notRegistered;
    if (!entry->isOn)
        return Status::requiresApproval;
    const bool isProgram = !entry->command.empty() && ::access(entry->command.front().c_str(), X_OK) == 0;
    return isProgram ? Status::enabled : Status::notFound;
}

std::string LoginItem::registerItem()
{
    return Autostart::write(identifier, { "Vantry", "The taskbar along the edge of the screen", { ownExecutable() } });
}

std::string LoginItem::unregisterItem()
{
    return Autostart::remove(identifier);
}

}
