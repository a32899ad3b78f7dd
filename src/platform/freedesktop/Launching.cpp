#include "freedesktop/Launching.h"

#include "freedesktop/LaunchContext.h"
#include "freedesktop/SessionBus.h"

#include <gio/gdesktopappinfo.h>

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <vector>

namespace freedesktop::Launching {
namespace {

/// Where an operation puts what went wrong; it is told to whoever looks at standard error.
class Failure {
public:
    explicit Failure(const std::string& what)
        : what_(what)
    {
    }
    ~Failure()
    {
        if (!error_)
            return;
        std::fprintf(stderr, "vantry: %s can't be opened: %s\n", what_.c_str(), error_->message);
        g_error_free(error_);
    }
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    operator GError**() { return &error_; }

private:
    const std::string& what_;
    GError* error_ = nullptr;
};

/// Null, which is told, where the entry can't be used.
Owned<GDesktopAppInfo> applicationOf(const std::string& entryFile)
{
    Owned<GDesktopAppInfo> application(g_desktop_app_info_new_from_filename(entryFile.c_str()));
    if (!application)
        std::fprintf(stderr, "vantry: %s can't be opened: its program isn't there\n", entryFile.c_str());
    return application;
}

bool launch(const std::string& entryFile, GDesktopAppInfo* application, LaunchNotifier& notifier)
{
    Failure failure(entryFile);
    return g_app_info_launch(G_APP_INFO(application), nullptr, makeLaunchContext(notifier).get(), failure);
}

bool spawn(std::initializer_list<const char*> command, LaunchNotifier& notifier)
{
    const std::unique_ptr<char, decltype(&g_free)> path(g_find_program_in_path(*command.begin()), g_free);
    if (!path)
        return false;
    std::vector<char*> arguments;
    for (const char* argument : command)
        arguments.push_back(const_cast<char*>(argument));
    arguments.push_back(nullptr);
    const Owned<GAppLaunchContext> context = makeLaunchContext(notifier);
    const std::unique_ptr<char*, decltype(&g_strfreev)> environment(
        g_app_launch_context_get_environment(context.get()), g_strfreev);
    return g_spawn_async(
        nullptr, arguments.data(), environment.get(), G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr, nullptr);
}

}

bool launchEntry(const std::string& entryFile, LaunchNotifier& notifier)
{
    const auto application = applicationOf(entryFile);
    return application && launch(entryFile, application.get(), notifier);
}

bool launchNewWindow(const std::string& entryFile, LaunchNotifier& notifier)
{
    const auto application = applicationOf(entryFile);
    if (!application)
        return false;
    const char* const* actions = g_desktop_app_info_list_actions(application.get());
    for (const char* name : { "new-window", "NewWindow", "new_window" }) {
        if (!g_strv_contains(actions, name))
            continue;
        g_desktop_app_info_launch_action(application.get(), name, makeLaunchContext(notifier).get());
        return true;
    }
    return launch(entryFile, application.get(), notifier);
}

bool tryHandler(const std::string& url, LaunchNotifier& notifier)
{
    return g_app_info_launch_default_for_uri(url.c_str(), makeLaunchContext(notifier).get(), nullptr);
}

bool openWithHandler(const std::string& url, LaunchNotifier& notifier)
{
    Failure failure(url);
    return g_app_info_launch_default_for_uri(url.c_str(), makeLaunchContext(notifier).get(), failure);
}

/// Source: freedesktop.org, "File Manager DBus Interface", ShowItems.
bool reveal(const std::string& fileUrl, LaunchNotifier& notifier)
{
    constexpr int mostMilliseconds = 3000;
    const Owned<GDBusConnection> bus(sessionBus(mostMilliseconds));
    if (bus) {
        const char* const urls[] = { fileUrl.c_str(), nullptr };
        GVariant* answer = g_dbus_connection_call_sync(bus.get(), "org.freedesktop.FileManager1",
            "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1", "ShowItems",
            g_variant_new("(^ass)", urls, ""), nullptr, G_DBUS_CALL_FLAGS_NONE, mostMilliseconds, nullptr, nullptr);
        if (answer) {
            g_variant_unref(answer);
            return true;
        }
    }
    const Owned<GFile> file(g_file_new_for_uri(fileUrl.c_str()));
    const Owned<GFile> folder(g_file_get_parent(file.get()));
    if (!folder)
        return false;
    const std::unique_ptr<char, decltype(&g_free)> url(g_file_get_uri(folder.get()), g_free);
    return openWithHandler(url.get(), notifier);
}

bool launchApplicationFinder(LaunchNotifier& notifier)
{
    static const std::initializer_list<const char*> finders[] = {
        { "xfce4-appfinder" },
        { "rofi", "-show", "drun" },
        { "krunner" },
        { "mate-panel", "--run-dialog" },
        { "synapse" },
        { "albert", "show" },
        { "wofi", "--show", "drun" },
        { "dmenu_run" },
    };
    for (const auto& finder : finders) {
        if (spawn(finder, notifier))
            return true;
    }
    return false;
}

std::string handlerOf(const char* contentType)
{
    const Owned<GAppInfo> handler(g_app_info_get_default_for_type(contentType, FALSE));
    const char* id = handler ? g_app_info_get_id(handler.get()) : nullptr;
    if (!id)
        return {};
    std::string result(id);
    if (result.ends_with(".desktop"))
        result.resize(result.size() - std::string_view(".desktop").size());
    return result;
}

}
