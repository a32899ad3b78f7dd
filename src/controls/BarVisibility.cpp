#include "controls/BarVisibility.h"

#include "log/Log.h"
#include "settings/Settings.h"

void BarVisibility::toggle()
{
    const bool visible = !Settings::barVisible();
    Settings::barVisible.set(visible);
    Log::debug("bar visible -> ", visible);
}
