#include "support/ScenarioBuilder.h"

#include "embedded/World.h"

namespace embedded {

namespace {

std::string pathOf(const std::string& name)
{
    return "/Applications/" + name + ".app";
}

}

ScenarioBuilder::ScenarioBuilder()
{
    addDisplay().spaces.push_back({ .id = 2, .pid = {} });
}

Scenario::Display& ScenarioBuilder::addDisplay(double width, double height)
{
    std::uint64_t space = 1;
    for (const Display& each : displays)
        space += each.spaces.size();

    Display added;
    added.number = static_cast<std::uint32_t>(displays.size() + 1);
    added.uuid = "DISPLAY-" + std::to_string(displays.size() + 1);
    added.frame = { displays.empty() ? 0 : displays.back().frame.maxX(), 0, width, height };
    added.spaces = { { .id = space, .pid = {} } };
    return displays.emplace_back(std::move(added));
}

Scenario::Process& ScenarioBuilder::app(const std::string& name)
{
    processes.push_back({ .pid = firstPid + static_cast<pid_t>(processes.size()),
        .name = name,
        .bundleIdentifier = "org.example." + name,
        .bundlePath = pathOf(name),
        .icon = name,
        .faults = {} });
    return processes.back();
}

Scenario::Application& ScenarioBuilder::installedApp(const std::string& name)
{
    applications.push_back(
        { pathOf(name), "org.example." + name, name, name, { { .title = "Untitled", .spaces = {}, .faults = {} } } });
    return applications.back();
}

void ScenarioBuilder::pinnedApp(const std::string& name)
{
    dockTiles.push_back({ name, "file://" + installedApp(name).path + "/" });
}

Scenario::Window& ScenarioBuilder::window(pid_t owner, const std::string& title)
{
    windows.push_back({ .number = static_cast<std::uint32_t>(windows.size() + 1),
        .owner = owner,
        .title = title,
        .spaces = {},
        .faults = {} });
    return windows.back();
}

}
