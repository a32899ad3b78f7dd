#include "x11/Launching.h"

#include <gio/gdesktopappinfo.h>

#include <initializer_list>
#include <memory>
#include <vector>

namespace x11::Launching {
namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

bool spawn(std::initializer_list<const char*> command)
{
    const std::unique_ptr<char, decltype(&g_free)> path(g_find_program_in_path(*command.begin()), g_free);
    if (!path)
        return false;
    std::vector<char*> arguments;
    for (const char* argument : command)
        arguments.push_back(const_cast<char*>(argument));
    arguments.push_back(nullptr);
    return g_spawn_async(nullptr, arguments.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr, nullptr);
}

}

bool launchEntry(const std::string& entryFile)
{
    const Owned<GDesktopAppInfo> application(g_desktop_app_info_new_from_filename(entryFile.c_str()));
    return application && g_app_info_launch(G_APP_INFO(application.get()), nullptr, nullptr, nullptr);
}

bool openWithHandler(const std::string& url)
{
    return g_app_info_launch_default_for_uri(url.c_str(), nullptr, nullptr);
}

bool launchApplicationFinder()
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
        if (spawn(finder))
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
