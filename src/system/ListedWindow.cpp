#include "system/ListedWindow.h"

#include "windowserver/CGWindow.h"

std::optional<ListedWindow> ListedWindow::read(const Value& entry)
{
    const Value* layer = entry.find(kCGWindowLayer);
    const Value* number = entry.find(kCGWindowNumber);
    const Value* pid = entry.find(kCGWindowOwnerPID);
    if (!layer || !number || !pid)
        return std::nullopt;

    const auto layerValue = layer->integer();
    const auto numberValue = number->integer<std::uint32_t>();
    const auto pidValue = pid->integer<pid_t>();
    if (!layerValue || !numberValue || !pidValue)
        return std::nullopt;
    return ListedWindow { *numberValue, *pidValue, *layerValue };
}
