#pragma once

#include <iosfwd>
#include <string>
#include <vector>

/// The tool that reads and writes preference domains from a command line: "defaults VERB [DOMAIN] ...".
namespace Defaults {

/// Runs one command on the domains in a folder, without the tool's name among the arguments. The status to exit with: 0
/// on success; else 1, and `errors` says why. Any thread.
int run(const std::string& folder, const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors);

}
