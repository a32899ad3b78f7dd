#include "freedesktop/Badges.h"

#include <algorithm>
#include <utility>

namespace freedesktop {
namespace {

/// "application://firefox.desktop" gives "firefox".
std::string entryIdOf(std::string_view uri)
{
    for (const std::string_view prefix : { "application://", "application:" }) {
        if (uri.starts_with(prefix)) {
            uri.remove_prefix(prefix.size());
            break;
        }
    }
    if (uri.ends_with(".desktop"))
        uri.remove_suffix(std::string_view(".desktop").size());
    return std::string(uri);
}

/// More applications than anybody has: whoever makes up names gets no further.
constexpr std::size_t mostLaunchers = 1000;

}

std::optional<BadgeUpdate> BadgeUpdate::parse(GVariant* parameters)
{
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv})")))
        return std::nullopt;
    const char* uri = nullptr;
    GVariant* properties = nullptr;
    g_variant_get(parameters, "(&s@a{sv})", &uri, &properties);
    BadgeUpdate told { .entryId = entryIdOf(uri), .count = {}, .isVisible = {} };
    gint64 count = 0;
    gboolean isVisible = FALSE;
    if (g_variant_lookup(properties, "count", "x", &count))
        told.count = count;
    if (g_variant_lookup(properties, "count-visible", "b", &isVisible))
        told.isVisible = isVisible;
    g_variant_unref(properties);
    return told;
}

Badges::Badges(LastingBus& bus, DesktopEntries& entries, pid_t owner)
    : entries_(entries)
    , owner_(owner)
{
    bus.add({ [this](GDBusConnection* opened) { listen(opened); },
        [this] {
            // With it all who told something.
            stopListening();
            std::ranges::for_each(launchers_, hide);
        } });
}

Badges::~Badges()
{
    stopListening();
}

void Badges::listen(GDBusConnection* bus)
{
    bus_ = static_cast<GDBusConnection*>(g_object_ref(bus));
    subscriptions_ = {
        g_dbus_connection_signal_subscribe(bus, nullptr, "com.canonical.Unity.LauncherEntry", "Update", nullptr,
            nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onUpdate, this, nullptr),
        g_dbus_connection_signal_subscribe(bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
            "/org/freedesktop/DBus", nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onNameGone, this, nullptr),
    };
}

void Badges::stopListening()
{
    if (!bus_)
        return;
    for (const guint subscription : subscriptions_)
        g_dbus_connection_signal_unsubscribe(bus_, subscription);
    g_object_unref(std::exchange(bus_, nullptr));
}

void Badges::onUpdate(
    GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* parameters, gpointer self)
{
    if (const auto told = BadgeUpdate::parse(parameters))
        static_cast<Badges*>(self)->update(sender, *told);
}

void Badges::onNameGone(
    GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters, gpointer self)
{
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sss)")))
        return;
    const char* name = nullptr;
    const char* newOwner = nullptr;
    g_variant_get(parameters, "(&s&s&s)", &name, nullptr, &newOwner);
    if (*newOwner == '\0')
        static_cast<Badges*>(self)->dropSender(name);
}

Badges::Launcher& Badges::launcherOf(const std::string& entryId)
{
    const auto known = std::ranges::find(launchers_, entryId, &Launcher::entryId);
    return known == launchers_.end()
        ? launchers_.emplace_back(Launcher { .entryId = entryId, .sender = {}, .badge = {} })
        : *known;
}

void Badges::update(const std::string& sender, const BadgeUpdate& told)
{
    const bool isKnown = std::ranges::find(launchers_, told.entryId, &Launcher::entryId) != launchers_.end();
    if (!isKnown && launchers_.size() >= mostLaunchers)
        return;
    const auto entry = entries_.withId(told.entryId);
    Launcher& launcher = launcherOf(told.entryId);
    launcher.sender = sender;
    launcher.count = told.count.value_or(launcher.count);
    launcher.isVisible = told.isVisible.value_or(launcher.isVisible);
    launcher.badge
        = { entry ? entry->entry.name : told.entryId, launcher.isVisible ? std::to_string(launcher.count) : "" };
}

void Badges::hide(Launcher& launcher)
{
    launcher.isVisible = false;
    launcher.badge.text.clear();
}

void Badges::dropSender(const std::string& sender)
{
    for (Launcher& launcher : launchers_) {
        if (launcher.sender == sender)
            hide(launcher);
    }
}

std::optional<std::vector<host::Badge>> Badges::read(double)
{
    std::vector<host::Badge> result;
    std::ranges::transform(launchers_, std::back_inserter(result), &Launcher::badge);
    return result;
}

}
