#include "host/Desktop.h"

#include "base/PerDesktop.h"
#include "host/LoginItem.h"
#include "host/StatusItems.h"
#include "host/Tools.h"

#include <cassert>

namespace {
host::Desktop* currentDesktop = nullptr;
}

host::Desktop& host::Desktop::current()
{
    assert(currentDesktop);
    return *currentDesktop;
}

bool host::Desktop::hasCurrent()
{
    return currentDesktop != nullptr;
}

void host::Desktop::setCurrent(Desktop* desktop)
{
    if (desktop != currentDesktop)
        PerDesktop::endAll();
    currentDesktop = desktop;
}

host::Tools& host::Desktop::tools()
{
    static Tools none;
    return none;
}

host::LoginItem& host::Desktop::loginItem()
{
    static LoginItem none;
    return none;
}

host::StatusItems& host::Desktop::statusItems()
{
    static StatusItems none;
    return none;
}

std::unique_ptr<host::RunningTool> host::Tools::launch(const Run& run, std::string& reason)
{
    reason = run.path + ": there is no such tool on this desktop";
    return nullptr;
}

std::string host::LoginItem::registerItem()
{
    return "this desktop starts nothing at login";
}

std::string host::LoginItem::unregisterItem()
{
    return "this desktop starts nothing at login";
}
