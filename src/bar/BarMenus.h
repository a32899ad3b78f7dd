#pragma once

#include "appkit/NSMenu.h"
#include "model/BarItem.h"

#include <memory>

/// What a right click on a bar offers, made from the state of that moment. Main thread.
namespace BarMenus {

/// Of an application or window button. Its entries act on the item as it is now. For one that runs, takes as long as
/// listing its windows does.
std::shared_ptr<NSMenu> itemMenu(const BarItem& item);
/// Of the bar itself.
std::shared_ptr<NSMenu> barMenu();
/// Of the launcher: all applications.
std::shared_ptr<NSMenu> launcherMenu();

}
