#include "model/Pinning.h"

#include "log/Log.h"
#include "settings/Settings.h"

#include <algorithm>

namespace {

using StringsSetting = Settings::Setting<Settings::Strings>;

void removeEvery(const std::string& text, const StringsSetting& setting)
{
    Settings::Strings strings = setting();
    std::erase(strings, text);
    setting.set(strings);
}

/// False when it stands there already; then nothing is written.
bool appendOnce(const std::string& text, const StringsSetting& setting)
{
    Settings::Strings strings = setting();
    if (std::ranges::find(strings, text) != strings.end())
        return false;
    strings.push_back(text);
    setting.set(strings);
    return true;
}

}

namespace DockModel {

void pin(const BarItem& item)
{
    if (!item.bundleURL)
        return;
    removeEvery(key(item), Settings::hiddenKeys);
    if (appendOnce(item.bundleURL->standardizedPath(), Settings::extraPinnedPaths))
        Log::debug("pin: ", item.name);
}

void unpin(const BarItem& item)
{
    if (item.bundleURL)
        removeEvery(item.bundleURL->standardizedPath(), Settings::extraPinnedPaths);
    appendOnce(key(item), Settings::hiddenKeys);
    Log::debug("unpin: ", item.name);
}

}
