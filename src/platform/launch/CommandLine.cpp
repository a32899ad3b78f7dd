#include "launch/CommandLine.h"

#include <algorithm>
#include <fstream>

namespace {

/// A diagnostic run. On the command line it goes by a name, in the environment by a variable.
struct Run {
    const char* name;
    const char* variable;
    /// Whether it is about an application, part of whose name is the variable's value; "1" is that of others.
    bool takesApplication;
    const char* about;
};
constexpr Run probes[] = {
    { "displays", "BAR_PROBE_DISPLAYS", false, "what the screens and spaces are, and which window is on which" },
    { "windows", "BAR_COUNT_APP", true, "which windows of an application count" },
    { "raise", "BAR_PROBE_APP", true, "whether an application can be brought forward, and what its windows tell" },
    { "tree", "BAR_AXTREE_APP", true, "what an application shows to accessibility" },
    { "full-screen", "BAR_PROBE", false, "whether full-screen windows can be changed; it changes them" },
    { "capture", "BAR_PROBE_CAPTURE", false, "whether windows can be captured" },
};
constexpr const char* selfTest = "BAR_SELFTEST";

constexpr const char* options
    = "usage: vantry [options]\n"
      "Starts the taskbar on the X11 session of $DISPLAY, or without one in a desktop of its own.\n"
      "  --embedded       the desktop of its own, also where there is an X11 session\n"
      "  --scenario FILE  what that desktop is to look like (JSON); implies --embedded\n"
      "  --picture FILE   write a PNG of that desktop, then end; implies --embedded\n"
      "  --self-test      check that the program works here, then end\n"
      "  --probe NAME     write what the desktop says, then end; NAME is one of\n";

std::string namesOfProbes()
{
    std::string names;
    for (const Run& probe : probes)
        names += (names.empty() ? "" : ", ") + std::string(probe.name);
    return names;
}

/// Reads the arguments of a command line one after the other.
class Reader {
public:
    using Fault = std::optional<CommandLine::Error>;

    explicit Reader(const std::vector<std::string>& arguments)
        : next_(arguments.begin())
        , end_(arguments.end())
    {
    }

    std::variant<CommandLine, CommandLine::Error> read()
    {
        while (next_ != end_)
            if (const Fault fault = readOption(*next_++))
                return *fault;
        return line_;
    }

private:
    Fault readOption(const std::string& option)
    {
        if (option == "--embedded")
            line_.embedded = true;
        else if (option == "--help")
            line_.help = true;
        else if (option == "--version")
            line_.version = true;
        else if (option == "--self-test")
            line_.run.emplace(selfTest, "1");
        else if (option == "--scenario" || option == "--picture")
            return readFile(option);
        else if (option == "--probe")
            return readProbe();
        else
            return CommandLine::Error { "there is no option " + option };
        return {};
    }

    Fault readFile(const std::string& option)
    {
        if (next_ == end_)
            return CommandLine::Error { option + " needs a file" };
        (option == "--scenario" ? line_.scenario : line_.picture) = *next_++;
        line_.embedded = true;
        return {};
    }

    Fault readProbe()
    {
        if (next_ == end_)
            return CommandLine::Error { "--probe needs a name: " + namesOfProbes() };
        const std::string name = *next_++;
        const auto probe = std::ranges::find_if(probes, [&](const Run& each) { return each.name == name; });
        if (probe == std::end(probes))
            return CommandLine::Error { "there is no probe " + name + ", only " + namesOfProbes() };
        if (probe->takesApplication && next_ == end_)
            return CommandLine::Error { "--probe " + name + " needs an application, or part of its name" };
        line_.run.emplace(probe->variable, probe->takesApplication ? *next_++ : "1");
        return {};
    }

    std::vector<std::string>::const_iterator next_;
    std::vector<std::string>::const_iterator end_;
    CommandLine line_;
};

}

std::string CommandLine::usage()
{
    std::string text = options;
    for (const Run& probe : probes) {
        const std::string name = std::string(probe.name) + (probe.takesApplication ? " APPLICATION" : "");
        text += "      " + name + std::string(name.size() < 20 ? 20 - name.size() : 1, ' ') + " " + probe.about + "\n";
    }
    return text
        + "  --version        which version this is\n"
          "  --help           this text\n";
}

std::string CommandLine::versionText()
{
    return "vantry " VANTRY_VERSION "\n";
}

std::variant<CommandLine, CommandLine::Error> CommandLine::parse(const std::vector<std::string>& arguments)
{
    return Reader(arguments).read();
}

std::vector<std::string> processArguments()
{
    std::vector<std::string> arguments;
    std::ifstream in("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(in, argument, '\0');)
        arguments.push_back(argument);
    if (!arguments.empty())
        arguments.erase(arguments.begin());
    return arguments;
}
