#pragma once

#include "accessibility/AXUIElement.h"
#include "model/BarItem.h"

#include <sys/types.h>

#include <string>
#include <vector>

/// What a button's menu does. On an application that doesn't run any more it does nothing. Main thread.
namespace DockModel {

struct ListedElement {
    std::string title;
    AXUIElement element;
};

/// The application's windows that have a title. Costs up to a second for each call when the application hangs.
std::vector<ListedElement> windowList(const BarItem& item);
/// Brings a window of that list forward.
void raise(const AXUIElement& window, pid_t pid);
/// Has the application open another window, or launches it; how many processes that makes is its own affair.
void newWindow(const BarItem& item);
void setHidden(const BarItem& item, bool hidden);
bool isHidden(const BarItem& item);
void quit(const BarItem& item);
void forceQuit(const BarItem& item);

}
