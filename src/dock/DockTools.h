#pragma once

#include <string>
#include <vector>

/// The system's tools that the Dock's settings are changed with. Each call returns when the tool has ended; one that
/// can't be launched is logged. Main thread.
namespace DockTools {

inline constexpr const char* dockDomain = "com.apple.dock";

void defaults(std::vector<std::string> arguments);
/// Sets a key of the Dock's domain; `kind` and `value` as the tool takes them.
void writeDock(const char* key, const char* kind, const char* value);
/// That there is no such key is nothing to tell anybody.
void deleteFromDock(const char* key);
/// Has the system start the Dock anew, with the settings as they then are.
void restartDock();

}
