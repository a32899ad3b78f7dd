#include "model/BarItem.h"

std::optional<NSRunningApplication> runningApplication(const BarItem& item)
{
    return item.pid ? NSRunningApplication::runningApplication(*item.pid) : std::nullopt;
}

std::string DockModel::key(const BarItem& item)
{
    return item.bundleID.value_or(item.name);
}
