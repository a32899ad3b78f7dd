#include "freedesktop/LaunchContext.h"

#include "freedesktop/ProcessFiles.h"

#include <gio/gdesktopappinfo.h>

#include <set>
#include <string>
#include <string_view>

extern "C" {

struct VantryLaunchContext {
    GAppLaunchContext parent;
    freedesktop::LaunchNotifier* notifier;
};
struct VantryLaunchContextClass {
    GAppLaunchContextClass parent;
};

G_DEFINE_TYPE(VantryLaunchContext, vantry_launch_context, G_TYPE_APP_LAUNCH_CONTEXT)

static std::string textOf(const char* text)
{
    return text ? text : "";
}

static freedesktop::LaunchNotifier& notifierOf(GAppLaunchContext* context)
{
    return *reinterpret_cast<VantryLaunchContext*>(context)->notifier;
}

static char* announce(GAppLaunchContext* context, GAppInfo* info, GList*)
{
    auto* entry = G_DESKTOP_APP_INFO(info);
    const std::unique_ptr<char, decltype(&g_free)> icon(g_desktop_app_info_get_string(entry, "Icon"), g_free);
    const std::string identifier
        = notifierOf(context).begin({ textOf(g_app_info_get_name(info)), textOf(g_app_info_get_executable(info)),
            textOf(icon.get()), textOf(g_desktop_app_info_get_startup_wm_class(entry)) });
    return identifier.empty() ? nullptr : g_strdup(identifier.c_str());
}

static void takeBack(GAppLaunchContext* context, const char* identifier)
{
    if (identifier)
        notifierOf(context).cancel(identifier);
}

static void vantry_launch_context_class_init(VantryLaunchContextClass* context)
{
    context->parent.get_startup_notify_id = announce;
    context->parent.launch_failed = takeBack;
}

static void vantry_launch_context_init(VantryLaunchContext*) { }
}

namespace freedesktop {
namespace {

std::string nameOf(std::string_view assignment)
{
    return std::string(assignment.substr(0, assignment.find('=')));
}

void restoreEnvironment(GAppLaunchContext* context)
{
    const std::string first = contentsOf("/proc/self/environ");
    std::set<std::string> names;
    for (std::string_view rest = first; !rest.empty();) {
        const std::string assignment(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(assignment.size() + 1, rest.size()));
        const std::string name = nameOf(assignment);
        if (name.empty() || name.size() == assignment.size())
            continue;
        g_app_launch_context_setenv(context, name.c_str(), assignment.c_str() + name.size() + 1);
        names.insert(name);
    }
    if (names.empty())
        return;
    const std::unique_ptr<char*, decltype(&g_strfreev)> now(g_get_environ(), g_strfreev);
    for (char** each = now.get(); *each; ++each) {
        const std::string name = nameOf(*each);
        if (!names.contains(name))
            g_app_launch_context_unsetenv(context, name.c_str());
    }
}

}

Owned<GAppLaunchContext> makeLaunchContext(LaunchNotifier& notifier)
{
    auto* made = static_cast<VantryLaunchContext*>(g_object_new(vantry_launch_context_get_type(), nullptr));
    made->notifier = &notifier;
    Owned<GAppLaunchContext> context(&made->parent);
    restoreEnvironment(context.get());
    return context;
}

}
