#include "freedesktop/NotifierHost.h"

#include <utility>

namespace freedesktop {
namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";

}

NotifierHost::NotifierHost(LastingBus& bus)
    : watcher_(bus, { watcher, "/StatusNotifierWatcher", watcher }, { "StatusNotifierHostRegistered", nullptr })
{
    watcher_.onAppeared = [this] {
        set(std::nullopt);
        ask();
    };
    watcher_.onVanished = [this] { set(false); };
    watcher_.onSignal = [this](GVariant*) { ask(); };
}

void NotifierHost::ask()
{
    watcher_.ask("org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", watcher, "IsStatusNotifierHostRegistered"), "(v)", [this](GVariant* answer) {
            GVariant* value = nullptr;
            g_variant_get(answer, "(v)", &value);
            const bool isThere = g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
            g_variant_unref(value);
            set(isThere);
        });
}

void NotifierHost::set(std::optional<bool> isThere)
{
    if (std::exchange(isThere_, isThere) != isThere && onChange)
        onChange();
}

}
