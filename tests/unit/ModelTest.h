#pragma once

#include "Fixture.h"

#include "base/Value.h"
#include "log/Log.h"
#include "model/BarItem.h"
#include "system/ShowDesktop.h"
#include "system/WindowIndex.h"

#include <algorithm>
#include <string>
#include <vector>

/// A desktop for the program's model: the builder's one unless a test describes another, and every log line kept.
class ModelTest : public DesktopTest {
protected:
    using Texts = std::vector<std::string>;

    void SetUp() override
    {
        describe();
        start();
        Log::setSink([this](std::string_view line) {
            constexpr std::string_view prefix = "[bar] ";
            log_.emplace_back(line.substr(prefix.size(), line.size() - prefix.size() - 1));
        });
    }

    void TearDown() override { Log::setSink(nullptr); }

    /// What is said to the builder before the desktop starts.
    virtual void describe() { }

    static embedded::Scenario::Display display(
        std::uint32_t number, const std::string& uuid, const CGRect& frame, const std::vector<std::uint64_t>& spaces)
    {
        embedded::Scenario::Display display;
        display.number = number;
        display.uuid = uuid;
        display.frame = frame;
        for (const std::uint64_t space : spaces)
            display.spaces.push_back({ .id = space, .pid = {} });
        return display;
    }

    /// An installed application "/Applications/NAME.app" with identifier "org.NAME", not running.
    void install(const std::string& name, std::vector<embedded::Scenario::Window> windows = {})
    {
        embedded::Scenario::Application application;
        application.path = path(name);
        application.bundleIdentifier = "org." + name;
        application.displayName = name;
        application.windows = std::move(windows);
        world().install(application);
    }

    /// Starts an application of that kind, in the background.
    pid_t run(const std::string& name, host::ActivationPolicy policy = host::ActivationPolicy::regular)
    {
        if (!world().application(path(name)))
            install(name);
        embedded::Scenario::Process process;
        process.name = name;
        process.bundleIdentifier = "org." + name;
        process.bundlePath = path(name);
        process.policy = policy;
        return world().launch(process);
    }

    std::uint32_t openWindow(
        pid_t owner, const CGRect& bounds = { 100, 100, 800, 600 }, std::optional<std::string> title = "Window")
    {
        embedded::Scenario::Window window;
        window.owner = owner;
        window.bounds = bounds;
        window.title = std::move(title);
        return world().open(window);
    }

    static std::string path(const std::string& name) { return "/Applications/" + name + ".app"; }

    /// An item as the bar has it for a running application.
    static BarItem itemOf(const std::string& name, std::optional<pid_t> pid)
    {
        BarItem item;
        item.name = name;
        item.bundleID = "org." + name;
        item.bundleURL = NSURL::fileURLWithPath(path(name));
        item.pid = pid;
        return item;
    }

    static Texts names(const std::vector<BarItem>& items)
    {
        Texts names;
        std::ranges::transform(items, std::back_inserter(names), &BarItem::name);
        return names;
    }

    /// The log lines of one area, in order.
    Texts logged(const std::string& area) const
    {
        Texts lines;
        std::ranges::copy_if(
            log_, std::back_inserter(lines), [&](const std::string& line) { return line.starts_with(area); });
        return lines;
    }

    std::size_t count(std::string_view call, std::optional<pid_t> pid = {}) { return calls().named(call, pid).size(); }

    Texts log_;
};
