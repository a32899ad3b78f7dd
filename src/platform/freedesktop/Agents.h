#pragma once

#include <iosfwd>
#include <string>
#include <vector>

/// Login agents: property lists with a label and a command. One that is loaded has an autostart entry of its label,
/// which has this tool start it; so a loaded agent runs at the next login, never at once. Any thread.
namespace freedesktop::Agents {

/// The tool that loads and unloads them, without its name among the arguments. The status to exit with; one other than
/// 0 comes with a line to `errors`.
int launchctl(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors);

/// Has agents that are loaded started by the tools where they now are, when those they know have gone.
void followMovedTools();

}
