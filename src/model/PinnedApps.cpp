#include "model/PinnedApps.h"

#include "foundation/NSUserDefaults.h"
#include "log/Log.h"

#include <algorithm>

namespace {

std::optional<DockModel::PinnedApp> readTile(const Value& entry)
{
    const Value* data = entry.find("tile-data");
    if (!data)
        return std::nullopt;
    const Value* file = data->find("file-data");
    const Value* text = file ? file->find("_CFURLString") : nullptr;
    if (!text || !text->string())
        return std::nullopt;
    auto url = NSURL::URLWithString(*text->string());
    if (!url)
        return std::nullopt;

    const Value* label = data->find("file-label");
    return DockModel::PinnedApp { std::move(*url), label && label->string() ? *label->string() : "?" };
}

/// Absent when there is no list, or an element of it is no dictionary.
std::optional<Value::Array> persistentApps()
{
    const auto dock = NSUserDefaults::initWithSuiteName("com.apple.dock");
    auto entries = dock ? dock->arrayForKey("persistent-apps") : std::nullopt;
    if (!entries || !std::ranges::all_of(*entries, &Value::dictionary))
        return std::nullopt;
    return entries;
}

}

std::vector<DockModel::PinnedApp> DockModel::pinnedApps()
{
    const auto entries = persistentApps();
    if (!entries) {
        Log::debug("dock: could not read persistent-apps");
        return {};
    }

    std::vector<PinnedApp> apps;
    for (const Value& entry : *entries)
        if (auto app = readTile(entry))
            apps.push_back(std::move(*app));
    Log::debug("dock: ", apps.size(), " pinned apps");
    return apps;
}
