#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <functional>
#include <optional>

namespace freedesktop {

/// The desktop's accent colour: what the portal of settings says ("accent-color" of "org.freedesktop.appearance"), as
/// soon as and as long as it says so; else how the theme of the toolkit marks what is selected. Main thread.
class AccentColor {
public:
    AccentColor() = default;
    ~AccentColor();
    AccentColor(const AccentColor&) = delete;
    AccentColor& operator=(const AccentColor&) = delete;

    /// Begins to ask and to listen, if there is a session bus. Returns at once. A portal that doesn't run isn't
    /// started.
    void connect();

    /// 0xRRGGBB; absent where nobody has chosen one.
    std::optional<std::uint32_t> value() const;

    std::function<void()> onChange;

private:
    static void onAppeared(GDBusConnection* bus, const char* name, const char* owner, gpointer self);
    static void onVanished(GDBusConnection* bus, const char* name, gpointer self);
    static void onAnswer(GObject* bus, GAsyncResult* result, gpointer self);
    static void onSignal(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void listen(GDBusConnection* bus);
    void stopListening();
    void set(std::optional<std::uint32_t> color);

    guint watch_ = 0;
    GDBusConnection* bus_ = nullptr;
    guint subscription_ = 0;
    GCancellable* cancellable_ = nullptr;
    std::optional<std::uint32_t> chosen_;
};

}
