#include "host/Desktop.h"

#include "base/PerDesktop.h"

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
