#pragma once

#include "freedesktop/LastingBus.h"

#include <gio/gio.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace freedesktop {

/// How the user wants programs to look, as the portal of settings says it ("org.freedesktop.appearance"), as soon as
/// and as long as it says so. A portal that doesn't run isn't started. Main thread.
class PortalAppearance {
public:
    explicit PortalAppearance(LastingBus& bus);
    ~PortalAppearance();
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;

    /// The accent colour, 0xRRGGBB: where the portal names none, how the theme of the toolkit marks what is selected.
    /// Absent where nobody has chosen one.
    std::optional<std::uint32_t> accentColor() const;
    /// Whether dark windows are preferred.
    bool prefersDark() const { return scheme_ == dark; }

    std::function<void()> onAccentColor;
    std::function<void()> onScheme;

private:
    static void onAppeared(GDBusConnection* bus, const char* name, const char* owner, gpointer self);
    static void onVanished(GDBusConnection* bus, const char* name, gpointer self);
    struct Asked;
    static void onAnswer(GObject* bus, GAsyncResult* result, gpointer asked);
    static void onSignal(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void watch(GDBusConnection* bus);
    void stopWatching();
    void listen(GDBusConnection* bus);
    void stopListening();
    void set(std::string_view key, GVariant* value);

    guint watch_ = 0;
    GDBusConnection* bus_ = nullptr;
    guint subscription_ = 0;
    GCancellable* cancellable_ = nullptr;
    std::optional<std::uint32_t> chosen_;
    static constexpr std::uint32_t dark = 1;
    std::uint32_t scheme_ = 0;
};

}
