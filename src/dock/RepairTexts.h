#pragma once

#include <string>

/// What the files of the login agent hold.
namespace RepairTexts {

/// The shell script. `support` is the full path of the folder with the flag and the backup.
std::string script(const std::string& support);
/// The property list of an agent that runs the script at each login.
std::string agent(const std::string& label, const std::string& support);

}
