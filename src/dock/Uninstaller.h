#pragma once

#include <functional>
#include <string>

/// Undoes everything that the program did to the system, and ends it: what is left is the program itself. Main thread.
namespace Uninstaller {

/// What no program can take back by itself.
inline constexpr const char* permissionNote
    = "Accessibility and Screen Recording access must be removed by hand in System Settings \u2192 Privacy & Security. "
      "macOS does not allow an app to revoke its own.";

/// What would be undone now, a line each; at least one.
std::string summary();

/// Each step goes on whatever the one before it came to, so that the process always ends.
void run(bool revealingInFinder = true);

/// Set at launch: ends the process without giving the system's settings back a second time.
extern std::function<void()> endProcess;

}
