#pragma once

#include "embedded/Scenario.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace embedded {

/// Writes a scenario in a few lines, for tests. It starts with one display of 1440 by 900 points, with the spaces 1 and
/// 2 and a menu bar of 24 points, no Dock tiles, and Finder and the Dock running.
///
///     ScenarioBuilder desk;
///     const pid_t mail = desk.app("Mail").pinned().pid();
///     desk.window(mail, "Inbox").at({ 100, 80, 800, 600 }).number(11);
///     desk.window(mail, "Draft")->isMinimised = true;
///     desk.app("Browser").installed();
///
/// Windows are listed front first, in the order in which they were written. What the builder has no word for is set on
/// the record itself: `desk.app("Chat")->faults.hangs = true`, `desk.scenario().screenCapturePermitted = false`.
class ScenarioBuilder {
public:
    class App;
    class Window;
    class Display;

    ScenarioBuilder();

    /// Another display, to the right of the last one: number 2, UUID "DISPLAY-2", one space.
    Display addDisplay(double width = 1440, double height = 900);
    /// The nth display, from 0; the builder makes the first.
    Display display(std::size_t index);

    /// A running regular application: identifier "org.example.NAME" in small letters, bundle "/Applications/NAME.app".
    /// Process identifiers count up from `firstPid`.
    App app(const std::string& name);
    /// An installed application that doesn't run.
    App installedApp(const std::string& name);
    /// A window of a process. Window numbers count up from 1. By default 640 by 480 at (100, 100).
    Window window(pid_t owner, const std::string& title);

    /// An entry of the Dock's tiles, for what isn't an application of the builder.
    ScenarioBuilder& tile(const std::string& label, const std::string& url);
    ScenarioBuilder& badge(const std::string& title, const std::string& text);
    ScenarioBuilder& frontmost(pid_t pid);
    ScenarioBuilder& trash(std::vector<std::string> names);

    Scenario& scenario() { return scenario_; }

private:
    Scenario scenario_;
    pid_t nextPid_;
    std::uint32_t nextNumber_ = 1;
};

/// An application being described: one that runs, one that is installed, or both.
class ScenarioBuilder::App {
public:
    App& hidden();
    /// By default "org.example." and the name in small letters.
    App& identifier(std::optional<std::string> identifier);
    /// Where it runs from; none for a program without a bundle.
    App& path(std::optional<std::string> path);
    App& icon(std::optional<std::string> icon);
    /// Say it before its windows are written.
    App& pid(pid_t pid);
    /// Puts it among the installed applications. When it is launched it opens one window, "Untitled".
    App& installed();
    /// Installs it, and puts it among the Dock's tiles.
    App& pinned();

    /// Of a running one.
    pid_t pid() const { return scenario_.processes[*process_].pid; }
    Scenario::Process* operator->() const { return &scenario_.processes[*process_]; }
    /// Of an installed one.
    Scenario::Application& application() const { return scenario_.applications[*application_]; }

private:
    friend class ScenarioBuilder;
    explicit App(Scenario& scenario)
        : scenario_(scenario)
    {
    }

    Scenario& scenario_;
    std::optional<std::size_t> process_;
    std::optional<std::size_t> application_;
};

/// A window being described.
class ScenarioBuilder::Window {
public:
    /// Window space.
    Window& at(const CGRect& bounds);
    Window& number(std::uint32_t number);
    Window& on(std::vector<std::uint64_t> spaces);

    std::uint32_t number() const { return get().number; }
    Scenario::Window* operator->() { return &get(); }

private:
    friend class ScenarioBuilder;
    Window(Scenario& scenario, std::size_t index)
        : scenario_(scenario)
        , index_(index)
    {
    }
    Scenario::Window& get() const { return scenario_.windows[index_]; }

    Scenario& scenario_;
    std::size_t index_;
};

/// A display being described.
class ScenarioBuilder::Display {
public:
    /// Screen space.
    Display& frame(const CGRect& frame);
    Display& menuBar(double height);
    Display& dockInset(double inset);
    Display& number(std::optional<std::uint32_t> number);
    Display& spaces(std::vector<Scenario::Space> spaces);

private:
    friend class ScenarioBuilder;
    Display(Scenario& scenario, std::size_t index)
        : scenario_(scenario)
        , index_(index)
    {
    }
    Scenario::Display& get() const { return scenario_.displays[index_]; }

    Scenario& scenario_;
    std::size_t index_;
};

}
