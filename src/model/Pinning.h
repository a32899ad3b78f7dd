#pragma once

#include "model/BarItem.h"

/// Which applications stay on the bar while they don't run. The Dock's own list never changes. Main thread.
namespace DockModel {

void pin(const BarItem& item);
void unpin(const BarItem& item);

}
