#include "model/BarItem.h"

std::optional<NSRunningApplication> runningApplication(const BarItem& item)
{
    return item.pid ? NSRunningApplication::runningApplication(*item.pid) : std::nullopt;
}
