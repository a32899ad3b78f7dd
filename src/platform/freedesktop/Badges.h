#pragma once

#include "freedesktop/DesktopEntries.h"

#include <gio/gio.h>

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace freedesktop {

/// The counts that applications show on their launchers, as they tell them by signals of
/// com.canonical.Unity.LauncherEntry on the session bus. Signals come on the main thread; reading is safe from any.
class Badges {
public:
    explicit Badges(DesktopEntries& entries)
        : entries_(entries)
    {
    }
    ~Badges();
    Badges(const Badges&) = delete;
    Badges& operator=(const Badges&) = delete;

    /// Begins to listen, if there is a session bus. Returns at once.
    void connect();

    struct Badge {
        std::string applicationName;
        /// Empty while none shows.
        std::string text;
    };
    /// Every application that ever showed a badge; its index stays.
    std::vector<Badge> all() const;
    std::optional<Badge> at(std::size_t index) const;

private:
    struct Launcher {
        std::string entryId;
        /// The bus name of the program that tells the count.
        std::string sender;
        long long count = 0;
        bool isVisible = false;
        Badge badge;
    };

    static void onBus(GObject*, GAsyncResult* result, gpointer self);
    static void onUpdate(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);
    static void onNameGone(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void listen(GDBusConnection* bus);
    void update(const std::string& sender, const std::string& uri, GVariant* properties);
    void dropSender(const std::string& sender);
    Launcher& launcherOf(const std::string& entryId);

    DesktopEntries& entries_;
    mutable std::mutex mutex_;
    std::vector<Launcher> launchers_;
    GCancellable* cancellable_ = nullptr;
    GDBusConnection* bus_ = nullptr;
    std::vector<guint> subscriptions_;
};

}
