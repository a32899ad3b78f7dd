#pragma once

#include <string>

/// What a launcher tells the window manager of a program that it starts: that its first window is awaited, and that the
/// user asked for it just now, so that it may come to the front. Each message goes over a connection of its own: it
/// needs the server's present time, and starting a program is rare.
namespace x11::StartupNotice {

struct Program {
    std::string name;
    std::string executable;
    std::string icon;
    /// The class that its windows will have; empty when it isn't known.
    std::string wmClass;
};

/// Announces the program, and gives the identifier that it is to hand back with its first window; empty without a
/// server.
std::string begin(const Program& program);
/// Takes the announcement back: the program couldn't be started.
void cancel(const std::string& identifier);

}
