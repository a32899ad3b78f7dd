#include "freedesktop/PanelDock.h"

#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage = R"(usage: vantry-killall Dock

Starts the Dock anew, with its settings as they now are in com.apple.dock. On this desktop that is the panel or dock
program on the taskbar's edge, if there is one: it is made to be as the settings say.
)";

}

int main(int argc, char** argv)
{
    const std::string_view name = argc == 2 ? argv[1] : "";
    if (name == "--help" || name == "help") {
        std::cout << usage;
        return 0;
    }
    if (argc < 2) {
        std::cerr << usage;
        return 1;
    }
    if (name != "Dock") {
        std::cerr << "vantry-killall: no matching processes belonging to you were found\n";
        return 1;
    }
    freedesktop::DesktopEntries entries;
    const std::string reason = freedesktop::PanelDock::relaunch(entries);
    if (reason.empty())
        return 0;
    std::cerr << "vantry-killall: " << reason << '\n';
    return 1;
}
