#pragma once

#include "freedesktop/DesktopEntries.h"
#include "host/Badges.h"

#include <gio/gio.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace freedesktop {

/// What one signal tells; what it doesn't tell has not changed.
struct BadgeUpdate {
    /// Of a desktop entry, without ".desktop".
    std::string entryId;
    std::optional<long long> count;
    std::optional<bool> isVisible;

    /// Absent when the signal's parameters are none of these.
    static std::optional<BadgeUpdate> parse(GVariant* parameters);
};

/// The counts that applications show on their launchers, as they tell them by signals of
/// com.canonical.Unity.LauncherEntry on the session bus. Main thread.
class Badges final : public host::Badges {
public:
    /// `owner` is the process that counts as the one which shows them.
    Badges(DesktopEntries& entries, pid_t owner)
        : entries_(entries)
        , owner_(owner)
    {
    }
    ~Badges() override;
    Badges(const Badges&) = delete;
    Badges& operator=(const Badges&) = delete;

    /// Begins to listen, if there is a session bus. Returns at once.
    void connect();

    std::optional<pid_t> owner() override { return owner_; }
    /// Of every application that ever showed one.
    std::optional<std::vector<host::Badge>> read(double timeout) override;

private:
    struct Launcher {
        std::string entryId;
        /// The bus name of the program that tells the count.
        std::string sender;
        long long count = 0;
        bool isVisible = false;
        host::Badge badge;
    };

    static void onBus(GObject*, GAsyncResult* result, gpointer self);
    static void onUpdate(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);
    static void onNameGone(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void listen(GDBusConnection* bus);
    void update(const std::string& sender, const BadgeUpdate& told);
    void dropSender(const std::string& sender);
    Launcher& launcherOf(const std::string& entryId);

    DesktopEntries& entries_;
    pid_t owner_;
    std::vector<Launcher> launchers_;
    GCancellable* cancellable_ = nullptr;
    GDBusConnection* bus_ = nullptr;
    std::vector<guint> subscriptions_;
};

}
