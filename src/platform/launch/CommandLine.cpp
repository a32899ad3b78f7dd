#include "launch/CommandLine.h"

#include <fstream>

const char* CommandLine::usage()
{
    return "usage: vantry [options]\n"
           "Starts the taskbar on the X11 session of $DISPLAY, or without one in a desktop of its own.\n"
           "  --embedded       the desktop of its own, also where there is an X11 session\n"
           "  --scenario FILE  what that desktop is to look like (JSON); implies --embedded\n"
           "  --picture FILE   write a PNG of that desktop, then end; implies --embedded\n"
           "  --help           this text\n";
}

std::variant<CommandLine, CommandLine::Error> CommandLine::parse(const std::vector<std::string>& arguments)
{
    CommandLine line;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--embedded") {
            line.embedded = true;
        } else if (option == "--help") {
            line.help = true;
        } else if (option == "--scenario" || option == "--picture") {
            if (i + 1 == arguments.size())
                return Error { option + " needs a file" };
            (option == "--scenario" ? line.scenario : line.picture) = arguments[++i];
            line.embedded = true;
        } else {
            return Error { "there is no option " + option };
        }
    }
    return line;
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
