#include "freedesktop/Agents.h"

#include "base/PreferenceFile.h"
#include "freedesktop/Autostart.h"
#include "freedesktop/OwnPrograms.h"
#include "freedesktop/UserFolders.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <optional>
#include <ostream>
#include <string_view>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;

constexpr const char* usage = R"(usage: vantry-launchctl VERB ...

  bootstrap gui/UID PLIST   loads a login agent: it runs at the next login
  bootout gui/UID/LABEL     unloads one
  list                      the labels of those that are loaded
  start PLIST               runs an agent's command now, in place of this tool
  help                      this text
)";

// The platform's own numbers.
constexpr int noSuchProcess = 3;
constexpr int inputOutputError = 5;
constexpr int alreadyLoaded = 37;
constexpr int wrongUse = 64;
constexpr int cannotRun = 127;

constexpr std::string_view startVerb = "start";

struct Agent {
    std::string label;
    Arguments command;
};

std::optional<Agent> readAgent(const std::string& file)
{
    const auto contents = PreferenceFile(file).read();
    const Value* label = contents.values.find("Label");
    const Value* arguments = contents.values.find("ProgramArguments");
    if (!label || !label->string() || !arguments || !arguments->array())
        return std::nullopt;
    Agent agent { *label->string(), {} };
    for (const Value& argument : *arguments->array())
        agent.command.push_back(argument.string() ? *argument.string() : "");
    const bool isSound = !agent.command.empty() && !agent.label.empty() && agent.label.find('/') == std::string::npos;
    return isSound ? std::optional(std::move(agent)) : std::nullopt;
}

Arguments startCommand(const std::string& file)
{
    return { besideOwnExecutable("vantry-launchctl"), std::string(startVerb), file };
}

std::string load(const std::string& label, const std::string& file)
{
    return Autostart::write(
        label, { label, "Puts the desktop in order after a crash of the taskbar", startCommand(file) });
}

bool isAgentEntry(const Autostart::Entry& entry)
{
    return entry.command.size() == 3 && entry.command[0].ends_with("/vantry-launchctl")
        && entry.command[1] == startVerb;
}

/// The labels of the agents that are loaded, and their entries.
std::vector<std::pair<std::string, Autostart::Entry>> loaded()
{
    std::vector<std::pair<std::string, Autostart::Entry>> agents;
    std::error_code error;
    for (const auto& file : fs::directory_iterator(configFolder() + "/autostart", error)) {
        auto entry
            = file.path().extension() == ".desktop" ? Autostart::read(file.path().stem().string()) : std::nullopt;
        if (entry && isAgentEntry(*entry))
            agents.emplace_back(file.path().stem().string(), *std::move(entry));
    }
    std::ranges::sort(agents, {}, &std::pair<std::string, Autostart::Entry>::first);
    return agents;
}

int bootstrap(const Arguments& arguments, std::ostream&, std::ostream& errors)
{
    const std::string file = locate(fs::absolute(arguments[2]).string());
    const auto agent = readAgent(file);
    if (!agent) {
        errors << "Bootstrap failed: " << file << " is no property list of an agent\n";
        return inputOutputError;
    }
    if (Autostart::read(agent->label)) {
        errors << "Bootstrap failed: " << agent->label << " is loaded already\n";
        return alreadyLoaded;
    }
    if (const std::string reason = load(agent->label, file); !reason.empty()) {
        errors << "Bootstrap failed: " << reason << '\n';
        return inputOutputError;
    }
    return 0;
}

int bootout(const Arguments& arguments, std::ostream&, std::ostream& errors)
{
    const std::string label = arguments[1].substr(arguments[1].rfind('/') + 1);
    const auto entry = Autostart::read(label);
    if (!entry || !isAgentEntry(*entry)) {
        errors << "Boot-out failed: no agent " << label << " is loaded\n";
        return noSuchProcess;
    }
    if (const std::string reason = Autostart::remove(label); !reason.empty()) {
        errors << "Boot-out failed: " << reason << '\n';
        return inputOutputError;
    }
    return 0;
}

int list(const Arguments&, std::ostream& out, std::ostream&)
{
    for (const auto& [label, entry] : loaded())
        out << label << (entry.isOn ? "" : " (switched off)") << '\n';
    return 0;
}

/// Scripts of agents know the platform's tools by their full paths. The shell takes functions of such names from a
/// file, and they call the tools beside this one.
int start(const Arguments& arguments, std::ostream&, std::ostream& errors)
{
    const auto agent = readAgent(locate(fs::absolute(arguments[1]).string()));
    if (!agent) {
        errors << arguments[1] << " is no property list of an agent\n";
        return inputOutputError;
    }
    ::setenv("VANTRY_TOOLS", fs::path(ownExecutable()).parent_path().c_str(), 1);
    ::setenv("BASH_ENV", besideOwnExecutable("vantry-tools.bash").c_str(), 1);
    std::vector<char*> command;
    for (const std::string& argument : agent->command)
        command.push_back(const_cast<char*>(argument.c_str()));
    command.push_back(nullptr);
    ::execv(command.front(), command.data());
    errors << command.front() << ": " << std::strerror(errno) << '\n';
    return cannotRun;
}

int help(const Arguments&, std::ostream& out, std::ostream&)
{
    out << usage;
    return 0;
}

}

int Agents::launchctl(const Arguments& arguments, std::ostream& out, std::ostream& errors)
{
    struct Verb {
        std::string_view name;
        std::size_t words;
        int (*run)(const Arguments&, std::ostream& out, std::ostream& errors);
    };
    constexpr Verb verbs[] = {
        { "bootstrap", 3, bootstrap },
        { "bootout", 2, bootout },
        { "list", 1, list },
        { startVerb, 2, start },
        { "help", 1, help },
        { "--help", 1, help },
    };
    const auto verb = std::ranges::find(verbs, arguments.empty() ? "" : arguments.front(), &Verb::name);
    if (verb == std::end(verbs) || arguments.size() != verb->words) {
        errors << usage;
        return wrongUse;
    }
    return verb->run(arguments, out, errors);
}

void Agents::followMovedTools()
{
    for (const auto& [label, entry] : loaded())
        if (entry.isOn && ::access(entry.command.front().c_str(), X_OK) != 0)
            load(label, entry.command[2]);
}

}
