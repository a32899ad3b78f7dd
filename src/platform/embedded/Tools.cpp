#include "embedded/Tools.h"

#include "base/PreferenceFile.h"
#include "embedded/FaultBox.h"
#include "tools/Defaults.h"

#include <algorithm>
#include <iostream>

namespace embedded {

namespace {

class Ended final : public host::RunningTool {
    void wait() override { }
};

std::string joined(const host::Tools::Run& run)
{
    std::string line = run.path;
    for (const std::string& argument : run.arguments)
        line += ' ' + argument;
    return line;
}

/// The name that an agent's property list gives it; empty when it is none.
std::string agentLabel(const std::string& file)
{
    const auto contents = PreferenceFile(file).read();
    const Value* label = contents.values.find("Label");
    return label && label->string() ? *label->string() : "";
}

}

std::unique_ptr<host::RunningTool> Tools::launch(const Run& run, std::string& reason)
{
    const std::string line = joined(run);
    log_.add({ .name = "tool", .value = line });
    auto& missing = world_.faults().missingTools;
    if (std::ranges::find(missing, run.path) != missing.end()) {
        reason = run.path + ": no such file";
        return nullptr;
    }
    std::ostream nowhere(nullptr);
    std::ostream& out = run.isSilent ? nowhere : std::cout;
    std::ostream& errors = run.isSilent ? nowhere : std::cerr;
    const auto fails = std::ranges::find_if(
        world_.faults().failingTools, [&](const auto& fault) { return line.find(fault.first) != line.npos; });
    if (fails != world_.faults().failingTools.end() && takeFailure(world_.faults().failingTools, fails->first))
        errors << run.path << ": failed\n";
    else if (run.path == "/usr/bin/defaults")
        Defaults::run(session_.preferencesFolder(), run.arguments, out, errors);
    else if (run.path == "/usr/bin/killall")
        killall(run.arguments, errors);
    else if (run.path == "/bin/launchctl")
        launchctl(run.arguments, errors);
    else {
        reason = run.path + ": no such file";
        return nullptr;
    }
    return std::make_unique<Ended>();
}

void Tools::killall(const std::vector<std::string>& arguments, std::ostream& errors)
{
    for (const std::string& name : arguments) {
        std::vector<pid_t> named;
        for (const RunningProcess& process : world_.processes())
            if (process.record->localizedName == name)
                named.push_back(process.pid());
        if (named.empty())
            errors << "No matching processes belonging to you were found\n";
        std::ranges::for_each(named, [this](pid_t pid) { world_.quit(pid); });
    }
}

void Tools::launchctl(const std::vector<std::string>& arguments, std::ostream& errors)
{
    const std::string verb = arguments.empty() ? "" : arguments.front();
    auto& agents = world_.agents();
    if (verb == "bootstrap" && arguments.size() == 3) {
        const std::string label = agentLabel(session_.locate(arguments[2]));
        if (label.empty() || !agents.insert(label).second)
            errors << "Bootstrap failed: 5: Input/output error\n";
    } else if (verb == "bootout" && arguments.size() == 2) {
        if (agents.erase(arguments[1].substr(arguments[1].rfind('/') + 1)) == 0)
            errors << "Boot-out failed: 3: No such process\n";
    } else
        errors << "launchctl: unexpected arguments\n";
}

}
