#include "support/ScenarioBuilder.h"

#include "embedded/World.h"

#include <algorithm>
#include <cctype>

namespace embedded {

namespace {

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

std::string identifierOf(const std::string& name)
{
    return "org.example." + lowerCase(name);
}

std::string pathOf(const std::string& name)
{
    return "/Applications/" + name + ".app";
}

Scenario::Application describedAs(const Scenario::Process& process)
{
    const std::string name = process.name.value_or("?");
    return { process.bundlePath.value_or(pathOf(name)), process.bundleIdentifier, name, process.icon,
        { { .title = "Untitled", .spaces = {}, .faults = {} } } };
}

}

ScenarioBuilder::ScenarioBuilder()
    : nextPid_(firstPid)
{
    addDisplay().spaces({ { .id = 1, .pid = {} }, { .id = 2, .pid = {} } });
}

ScenarioBuilder::Display ScenarioBuilder::addDisplay(double width, double height)
{
    const std::size_t index = scenario_.displays.size();
    std::uint64_t space = 1;
    for (const auto& each : scenario_.displays)
        space += each.spaces.size();

    Scenario::Display added;
    added.number = static_cast<std::uint32_t>(index + 1);
    added.uuid = "DISPLAY-" + std::to_string(index + 1);
    added.frame = { index == 0 ? 0 : scenario_.displays.back().frame.maxX(), 0, width, height };
    added.spaces = { { .id = space, .pid = {} } };
    scenario_.displays.push_back(std::move(added));
    return Display(scenario_, index);
}

ScenarioBuilder::Display ScenarioBuilder::display(std::size_t index)
{
    return Display(scenario_, index);
}

ScenarioBuilder::App ScenarioBuilder::app(const std::string& name)
{
    App app(scenario_);
    app.process_ = scenario_.processes.size();
    scenario_.processes.push_back({ .pid = nextPid_++,
        .name = name,
        .bundleIdentifier = identifierOf(name),
        .bundlePath = pathOf(name),
        .icon = lowerCase(name),
        .faults = {} });
    return app;
}

ScenarioBuilder::App ScenarioBuilder::installedApp(const std::string& name)
{
    App app(scenario_);
    app.application_ = scenario_.applications.size();
    scenario_.applications.push_back(describedAs({ .name = name,
        .bundleIdentifier = identifierOf(name),
        .bundlePath = pathOf(name),
        .icon = lowerCase(name),
        .faults = {} }));
    return app;
}

ScenarioBuilder::Window ScenarioBuilder::window(pid_t owner, const std::string& title)
{
    scenario_.windows.push_back(
        { .number = nextNumber_++, .owner = owner, .title = title, .spaces = {}, .faults = {} });
    return Window(scenario_, scenario_.windows.size() - 1);
}

ScenarioBuilder& ScenarioBuilder::tile(const std::string& label, const std::string& url)
{
    scenario_.dockTiles.push_back({ label, url });
    return *this;
}

ScenarioBuilder& ScenarioBuilder::badge(const std::string& title, const std::string& text)
{
    scenario_.badges[title] = text;
    return *this;
}

ScenarioBuilder& ScenarioBuilder::frontmost(pid_t pid)
{
    scenario_.frontmost = pid;
    return *this;
}

ScenarioBuilder& ScenarioBuilder::trash(std::vector<std::string> names)
{
    scenario_.trash = std::move(names);
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::hidden()
{
    (*this)->isHidden = true;
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::identifier(std::optional<std::string> identifier)
{
    if (application_)
        application().bundleIdentifier = identifier;
    if (process_)
        (*this)->bundleIdentifier = std::move(identifier);
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::path(std::optional<std::string> path)
{
    if (application_ && path)
        application().path = *path;
    if (process_)
        (*this)->bundlePath = std::move(path);
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::icon(std::optional<std::string> icon)
{
    if (application_)
        application().icon = icon;
    if (process_)
        (*this)->icon = std::move(icon);
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::pid(pid_t pid)
{
    (*this)->pid = pid;
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::installed()
{
    if (application_)
        return *this;
    application_ = scenario_.applications.size();
    scenario_.applications.push_back(describedAs(*operator->()));
    return *this;
}

ScenarioBuilder::App& ScenarioBuilder::App::pinned()
{
    installed();
    scenario_.dockTiles.push_back({ application().displayName, "file://" + application().path + "/" });
    return *this;
}

ScenarioBuilder::Window& ScenarioBuilder::Window::at(const CGRect& bounds)
{
    get().bounds = bounds;
    return *this;
}

ScenarioBuilder::Window& ScenarioBuilder::Window::number(std::uint32_t number)
{
    get().number = number;
    return *this;
}

ScenarioBuilder::Window& ScenarioBuilder::Window::on(std::vector<std::uint64_t> spaces)
{
    get().spaces = std::move(spaces);
    return *this;
}

ScenarioBuilder::Display& ScenarioBuilder::Display::frame(const CGRect& frame)
{
    get().frame = frame;
    return *this;
}

ScenarioBuilder::Display& ScenarioBuilder::Display::menuBar(double height)
{
    get().menuBarHeight = height;
    return *this;
}

ScenarioBuilder::Display& ScenarioBuilder::Display::dockInset(double inset)
{
    get().dockInset = inset;
    return *this;
}

ScenarioBuilder::Display& ScenarioBuilder::Display::number(std::optional<std::uint32_t> number)
{
    get().number = number;
    return *this;
}

ScenarioBuilder::Display& ScenarioBuilder::Display::spaces(std::vector<Scenario::Space> spaces)
{
    get().spaces = std::move(spaces);
    return *this;
}

}
