#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// What the user asked for when starting the program.
struct CommandLine {
    /// The embedded desktop also where an X11 session is at hand.
    bool embedded = false;
    /// Show nothing but the usage.
    bool help = false;
    /// Show nothing but the version.
    bool version = false;
    /// A scenario file for the embedded desktop; its own scenario when absent.
    std::optional<std::string> scenario;
    /// Write a picture of the embedded desktop there, then end.
    std::optional<std::string> picture;
    /// The variable of the environment, and its value, that has a diagnostic run take the bar's place.
    std::optional<std::pair<std::string, std::string>> run;

    struct Error {
        std::string reason;
    };
    /// `arguments` without the program's name.
    static std::variant<CommandLine, Error> parse(const std::vector<std::string>& arguments);
    static std::string usage();
    static std::string versionText();
};

/// This process's arguments without the program's name, from the kernel (procfs, /proc/self/cmdline).
std::vector<std::string> processArguments();
