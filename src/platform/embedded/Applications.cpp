#include "embedded/Applications.h"

#include "embedded/CallLog.h"
#include "embedded/Icons.h"
#include "embedded/World.h"

#include <QUrl>

namespace embedded {

std::optional<std::string> Applications::identifier(const std::string& path)
{
    const auto* application = world_.application(path);
    return application ? application->bundleIdentifier : std::nullopt;
}

std::optional<std::string> Applications::displayName(const std::string& path)
{
    const auto* application = world_.application(path);
    return application ? std::optional(application->displayName) : std::nullopt;
}

std::shared_ptr<const IconSource> Applications::icon(const std::string& path)
{
    const auto* application = world_.application(path);
    const auto own = application ? icons_.find(application->icon) : nullptr;
    return own ? own : icons_.general();
}

bool Applications::open(const std::string& path)
{
    return request("open", path, [](World& world, const Scenario::Application& each) { world.open(each); });
}

bool Applications::openAnother(const std::string& path)
{
    return request(
        "openAnother", path, [](World& world, const Scenario::Application& each) { world.openAnother(each); });
}

bool Applications::request(const char* name, const std::string& path, Effect effect)
{
    const bool exists = world_.application(path);
    log_.add({ .name = name, .value = path, .result = exists ? kAXErrorSuccess : kAXErrorIllegalArgument });
    if (!exists)
        return false;
    later_.atNextTurn([this, path, effect] {
        if (const auto* application = world_.application(path))
            effect(world_, *application);
    });
    return true;
}

bool Applications::openURL(const std::string& text)
{
    log_.add({ .name = "openURL", .value = text });
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return false;
    if (!url.isLocalFile())
        return true;
    if (!world_.processNamed(finderIdentifier))
        return false;
    later_.atNextTurn(
        [this, name = url.adjusted(QUrl::StripTrailingSlash).fileName().toStdString()] { showInFinder(name); });
    return true;
}

bool Applications::reveal(const std::string& text)
{
    log_.add({ .name = "reveal", .value = text });
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    if (!url.isLocalFile() || !world_.processNamed(finderIdentifier))
        return false;
    const QUrl folder
        = url.adjusted(QUrl::StripTrailingSlash).adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    later_.atNextTurn([this, name = folder.fileName().toStdString()] { showInFinder(name); });
    return true;
}

void Applications::showInFinder(const std::string& name)
{
    const RunningProcess* finder = world_.processNamed(finderIdentifier);
    if (!finder)
        return;
    const pid_t pid = finder->pid();
    world_.open({ .owner = pid, .title = name, .bounds = { 180, 140, 680, 440 }, .spaces = {}, .faults = {} });
    world_.activate(pid);
}

}
