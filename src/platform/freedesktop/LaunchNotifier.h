#pragma once

#include <string>

namespace freedesktop {

/// Who is told of the programs that are started here. Lives as long as this program: a launch can fail late.
class LaunchNotifier {
public:
    struct Program {
        std::string name;
        std::string executable;
        std::string icon;
        /// The class that its windows will have; empty when it isn't known.
        std::string wmClass;
    };

    virtual ~LaunchNotifier() = default;

    /// Announces the program, and gives the identifier that it is to hand back with its first window; empty when there
    /// is nobody to tell.
    virtual std::string begin(const Program& program) = 0;
    /// Takes the announcement back: the program couldn't be started.
    virtual void cancel(const std::string& identifier) = 0;
};

}
