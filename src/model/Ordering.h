#pragma once

#include "model/BarItem.h"

#include <vector>

namespace DockModel {

/// The items in the order that the user chose. Main thread.
std::vector<BarItem> ordered(std::vector<BarItem> items);

}
