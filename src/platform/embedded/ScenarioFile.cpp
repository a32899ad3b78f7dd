#include "embedded/ScenarioFile.h"

#include "embedded/Art.h"
#include "embedded/JsonLines.h"
#include "embedded/JsonObject.h"

#include <QJsonDocument>

#include <algorithm>
#include <set>

namespace embedded {

namespace {

using host::ActivationPolicy;

constexpr int none = 0;

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

/// Numbers or texts of one kind, each of which may be given once.
template <class T>
class Unique {
public:
    bool contains(const T& name) const { return names_.contains(name); }
    void add(const JsonObject& object, const char* key, const T& name, const std::string& what)
    {
        if (!names_.insert(name).second)
            object.fail(key, what + " is given twice");
    }

private:
    std::set<T> names_;
};

class Reader {
public:
    explicit Reader(JsonObject root)
        : root_(std::move(root))
    {
    }

    Scenario read()
    {
        readProcessNumbers();
        readDisplays();
        readApplications();
        readProcesses();
        readWindows();
        readDock();
        readRest();
        root_.done();
        return std::move(scenario_);
    }

private:
    /// Spaces name processes, so these must be known first.
    void readProcessNumbers()
    {
        processes_ = root_.objects("processes", "process");
        for (JsonObject& object : processes_) {
            pid_t pid = none;
            object.require("pid", pid);
            object.setLabel("process " + std::to_string(pid));
            if (pid <= 0)
                object.fail("pid", "\"pid\" must be above 0");
            pids_.add(object, "pid", pid, "this \"pid\"");
        }
    }

    void readDisplays()
    {
        for (JsonObject& object : root_.objects("displays", "display"))
            scenario_.displays.push_back(display(object));
        if (scenario_.displays.empty())
            root_.fail("displays", "there must be a display");
        if (scenario_.displays.front().frame.origin() != CGPoint {})
            root_.fail("displays/0/frame", "the first display must begin at 0, 0");
    }

    Scenario::Display display(JsonObject& object)
    {
        Scenario::Display display;
        object.read("number", display.number);
        if (display.number)
            displayNumbers_.add(object, "number", *display.number, "this \"number\"");
        object.read("uuid", display.uuid);
        if (display.uuid)
            displayIdentifiers_.add(object, "uuid", *display.uuid, "this \"uuid\"");
        object.require("frame", display.frame);
        object.read("menuBar", display.menuBarHeight);
        object.read("dockInset", display.dockInset);
        for (JsonObject& each : object.objects("spaces", object.label() + ": space"))
            display.spaces.push_back(space(each));
        if (display.spaces.empty())
            object.fail("spaces", "a display has at least one space");
        object.read("currentSpace", display.currentSpace);
        const bool isOwn = std::any_of(display.spaces.begin(), display.spaces.end(),
            [&](const Scenario::Space& each) { return each.id == display.currentSpace; });
        if (display.currentSpace && !isOwn)
            object.fail(
                "currentSpace", "space " + std::to_string(*display.currentSpace) + " is no space of this display");
        object.done();
        return display;
    }

    Scenario::Space space(JsonObject& object)
    {
        Scenario::Space space;
        object.require("id", space.id);
        if (space.id == 0)
            object.fail("id", "\"id\" must be above 0");
        spaces_.add(object, "id", space.id, "space " + std::to_string(space.id));
        object.read("type", space.type);
        object.read("pid", space.pid);
        if (space.pid)
            needProcess(object, "pid", "pid", *space.pid);
        object.done();
        return space;
    }

    void readApplications()
    {
        for (JsonObject& object : root_.objects("applications", "application"))
            scenario_.applications.push_back(application(object));
    }

    Scenario::Application application(JsonObject& object)
    {
        Scenario::Application application;
        object.require("path", application.path);
        if (!application.path.starts_with('/') || !application.path.ends_with(".app"))
            object.fail("path", "\"path\" must begin with \"/\" and end in \".app\"");
        paths_.add(object, "path", application.path, "this \"path\"");
        object.setLabel("application " + quoted(application.path));
        const auto slash = application.path.rfind('/') + 1;
        application.displayName = application.path.substr(slash, application.path.size() - slash - 4);
        object.read("name", application.displayName);
        object.read("identifier", application.bundleIdentifier);
        object.read("icon", application.icon);
        for (JsonObject& each : object.objects("windows", object.label() + ": window")) {
            application.windows.push_back(look(each));
            each.done();
        }
        object.done();
        return application;
    }

    void readProcesses()
    {
        for (JsonObject& object : processes_)
            scenario_.processes.push_back(process(object));
    }

    Scenario::Process process(JsonObject& object)
    {
        Scenario::Process process;
        object.read("pid", process.pid);
        takeAfter(object, process);
        object.read("name", process.name);
        object.read("identifier", process.bundleIdentifier);
        object.read("path", process.bundlePath);
        object.read("icon", process.icon);
        static const std::map<std::string, ActivationPolicy> policies { { "regular", ActivationPolicy::regular },
            { "accessory", ActivationPolicy::accessory }, { "prohibited", ActivationPolicy::prohibited } };
        object.readWord("policy", policies, process.policy);
        object.read("hidden", process.isHidden);
        process.faults = processFaults(object.object("faults"));
        object.done();
        return process;
    }

    /// What an installed application gives to its process.
    void takeAfter(JsonObject& object, Scenario::Process& process)
    {
        std::string path;
        object.read("application", path);
        if (path.empty())
            return;
        const auto& application = installed(object, path);
        process.name = application.displayName;
        process.bundleIdentifier = application.bundleIdentifier;
        process.bundlePath = application.path;
        process.icon = application.icon;
    }

    const Scenario::Application& installed(const JsonObject& object, const std::string& path) const
    {
        const auto place = std::find_if(scenario_.applications.begin(), scenario_.applications.end(),
            [&](const auto& application) { return application.path == path; });
        if (place == scenario_.applications.end())
            object.fail("application", quoted(path) + " is no application of this scenario");
        return *place;
    }

    ProcessFaults processFaults(JsonObject object)
    {
        ProcessFaults faults;
        object.read("hangs", faults.hangs);
        static const std::map<std::string, Refusal> refusals { { "never", Refusal::never }, { "once", Refusal::once },
            { "always", Refusal::always } };
        object.readWord("refusesToHide", refusals, faults.refusesToHide);
        object.read("needsManualAccessibility", faults.needsManualAccessibility);
        object.read("namesOnlyTransientWindows", faults.namesOnlyTransientWindows);
        object.read("misnamesFocusedWindow", faults.misnamesFocusedWindow);
        object.read("fails", faults.fails);
        object.read("diesAt", faults.diesAt);
        object.done();
        return faults;
    }

    void readWindows()
    {
        for (JsonObject& object : root_.objects("windows", "window"))
            scenario_.windows.push_back(window(object));
    }

    Scenario::Window window(JsonObject& object)
    {
        std::uint32_t number = none;
        object.read("number", number);
        if (number != none) {
            object.setLabel("window " + std::to_string(number));
            windowNumbers_.add(object, "number", number, "this \"number\"");
        }
        Scenario::Window window = look(object);
        window.number = number;
        object.require("owner", window.owner);
        needProcess(object, "owner", "owner", window.owner);
        object.read("spaces", window.spaces);
        for (const std::uint64_t space : window.spaces.value_or(std::vector<std::uint64_t> {})) {
            if (!spaces_.contains(space))
                object.fail("spaces", "space " + std::to_string(space) + " is no space of this scenario");
        }
        object.done();
        return window;
    }

    /// What windows that are open and those that will be have in common.
    Scenario::Window look(JsonObject& object)
    {
        Scenario::Window window;
        object.read("title", window.title);
        object.read("layer", window.layer);
        object.read("frame", window.bounds);
        object.read("minimised", window.isMinimised);
        object.read("fullScreen", window.isFullScreen);
        object.read("accessible", window.isAccessible);
        object.read("demandsAttention", window.demandsAttention);
        if (object.has("elements")) {
            window.elements.push_back({ .role = "AXWindow" });
            addElements(object, 0, window.elements);
        }
        JsonObject faults = object.object("faults");
        faults.read("refusesSizes", window.faults.refusesSizes);
        faults.read("minimumSize", window.faults.minimumSize);
        faults.read("fails", window.faults.fails);
        faults.done();
        return window;
    }

    /// What the object holds, as children of the element at that place.
    void addElements(JsonObject& object, std::size_t parent, std::vector<Scenario::Element>& elements)
    {
        for (JsonObject& each : object.objects("elements", object.label() + ": element")) {
            Scenario::Element element;
            each.require("role", element.role);
            each.read("title", element.title);
            each.read("description", element.description);
            each.read("text", element.text);
            each.read("number", element.number);
            each.read("least", element.least);
            each.read("most", element.most);
            const std::size_t place = elements.size();
            elements[parent].children.push_back(place);
            elements.push_back(std::move(element));
            addElements(each, place, elements);
            each.done();
        }
    }

    void readDock()
    {
        JsonObject dock = root_.object("dock");
        for (JsonObject& object : dock.objects("tiles", "tile"))
            scenario_.dockTiles.push_back(tile(object));
        dock.read("badges", scenario_.badges);
        dock.done();
    }

    Scenario::Tile tile(JsonObject& object)
    {
        Scenario::Tile tile;
        std::string path;
        object.read("application", path);
        if (!path.empty()) {
            tile.label = installed(object, path).displayName;
            tile.url = "file://" + path + "/";
        }
        object.read("label", tile.label);
        object.read("url", tile.url);
        object.done();
        return tile;
    }

    void readRest()
    {
        root_.read("trash", scenario_.trash);
        root_.read("frontmost", scenario_.frontmost);
        if (scenario_.frontmost)
            needProcess(root_, "frontmost", "frontmost", *scenario_.frontmost);
        readAccentColor();

        JsonObject permissions = root_.object("permissions");
        permissions.read("accessibility", scenario_.accessibilityPermitted);
        permissions.read("screenCapture", scenario_.screenCapturePermitted);
        permissions.done();

        JsonObject faults = root_.object("faults");
        faults.read("keyTapMissing", scenario_.faults.keyTapMissing);
        faults.read("dockMissing", scenario_.faults.dockMissing);
        faults.read("fullScreenDelay", scenario_.faults.fullScreenDelay);
        faults.read("captureDelay", scenario_.faults.captureDelay);
        faults.done();
    }

    /// Written "#RRGGBB".
    void readAccentColor()
    {
        if (!root_.has("accentColour"))
            return;
        std::optional<std::string> text;
        root_.read("accentColour", text);
        scenario_.accentColor.reset();
        if (!text)
            return;
        const bool isColor = text->size() == 7 && text->front() == '#'
            && text->find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
        if (!isColor)
            root_.fail("accentColour", "\"accentColour\" must be of the form \"#RRGGBB\"");
        scenario_.accentColor = static_cast<std::uint32_t>(std::stoul(text->substr(1), nullptr, 16));
    }

    void needProcess(const JsonObject& object, const char* key, const char* what, pid_t pid) const
    {
        if (!pids_.contains(pid))
            object.fail(key, std::string(what) + " " + std::to_string(pid) + " is no process of this scenario");
    }

    JsonObject root_;
    std::vector<JsonObject> processes_;
    Unique<pid_t> pids_;
    Unique<std::uint32_t> displayNumbers_;
    Unique<std::string> displayIdentifiers_;
    Unique<std::uint64_t> spaces_;
    Unique<std::string> paths_;
    Unique<std::uint32_t> windowNumbers_;
    Scenario scenario_;
};

}

std::variant<Scenario, ScenarioError> parseScenario(std::string_view json)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray(json.data(), static_cast<qsizetype>(json.size())), &error);
    if (error.error != QJsonParseError::NoError)
        return ScenarioError { JsonLines::lineAt(json, static_cast<std::size_t>(error.offset)),
            "no sound JSON: " + error.errorString().toStdString() };
    if (!document.isObject())
        return ScenarioError { 1, "a scenario is an object" };

    const JsonLines lines(json);
    if (lines.duplicate())
        return ScenarioError { lines.duplicate()->line, quoted(lines.duplicate()->key) + " is given twice" };
    try {
        return Reader(JsonObject(lines, document.object())).read();
    } catch (const ScenarioError& wrong) {
        return wrong;
    }
}

Scenario defaultScenario()
{
    return std::get<Scenario>(parseScenario(Art::read("scenarios/default.json").value()));
}

}
