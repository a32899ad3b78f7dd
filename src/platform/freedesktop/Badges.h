#pragma once

#include "freedesktop/DesktopEntries.h"
#include "freedesktop/LastingBus.h"
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
    Badges(LastingBus& bus, DesktopEntries& entries, pid_t owner);
    ~Badges() override;
    Badges(const Badges&) = delete;
    Badges& operator=(const Badges&) = delete;

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

    static void onUpdate(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);
    static void onNameGone(GDBusConnection*, const char* sender, const char* path, const char* interface,
        const char* signal, GVariant* parameters, gpointer self);

    void listen(GDBusConnection* bus);
    void stopListening();
    void update(const std::string& sender, const BadgeUpdate& told);
    void dropSender(const std::string& sender);
    static void hide(Launcher& launcher);
    Launcher& launcherOf(const std::string& entryId);

    DesktopEntries& entries_;
    pid_t owner_;
    std::vector<Launcher> launchers_;
    GDBusConnection* bus_ = nullptr;
    std::vector<guint> subscriptions_;
};

}
