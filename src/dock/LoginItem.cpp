#include "dock/LoginItem.h"

#include "foundation/NSBundle.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "log/Log.h"
#include "services/SMAppService.h"
#include "settings/Setting.h"

#include <string>

namespace {

/// Where the program was when it was last registered.
constexpr std::string_view pathKey = "loginItemBundlePath";

std::string currentPath()
{
    return NSBundle::mainBundle().bundleURL().standardizedPath();
}

}

bool LoginItem::isEnabled()
{
    return SMAppService::mainAppService().status() == SMAppServiceStatus::enabled;
}

void LoginItem::setEnabled(bool enabled)
{
    auto service = SMAppService::mainAppService();
    const auto error = enabled ? service.registerAndReturnError() : service.unregisterAndReturnError();
    if (error) {
        Log::debug("login item failed: ", error->localizedDescription);
        return;
    }
    auto store = NSUserDefaults::standard();
    if (enabled)
        store.setObject(currentPath(), pathKey);
    else
        store.removeObjectForKey(pathKey);
    Log::debug("login item -> ", enabled ? "true" : "false");
}

void LoginItem::reconcile()
{
    auto store = NSUserDefaults::standard();
    const auto stored = store.stringForKey(pathKey);
    const bool enabled = isEnabled();
    const std::string current = currentPath();
    const bool isUnwanted = !stored && !enabled;
    const bool isInOrder = stored == current && enabled;
    if (isUnwanted || isInOrder)
        return;
    Log::debug("login item: bundle moved (", stored.value_or("unset"), " -> ", current, "), re-registering");
    auto service = SMAppService::mainAppService();
    service.unregisterAndReturnError();
    if (const auto error = service.registerAndReturnError())
        Log::debug("login item: re-registration failed — ", error->localizedDescription);
    else
        store.setObject(current, pathKey);
}

bool Settings::LaunchAtLogin::operator()() const
{
    return LoginItem::isEnabled();
}

void Settings::LaunchAtLogin::set(bool launch) const
{
    LoginItem::setEnabled(launch);
    NSNotificationCenter::defaultCenter().post(didChange);
}
