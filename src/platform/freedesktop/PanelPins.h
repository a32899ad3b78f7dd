#pragma once

#include "freedesktop/PanelStore.h"

#include <string>
#include <vector>

namespace freedesktop {

/// The texts in a printed list of them.
std::vector<std::string> textsOf(const std::string& text);

/// The pinned programs of a dock that keeps each in a file of a folder of its own, and their order under a key of its
/// settings. A pins text holds both, files whole, so that they can be put back.
class PanelPins {
public:
    /// The folder is of the dock of that name.
    explicit PanelPins(const std::string& dock);

    std::string read(PanelStore& store, const std::string& key) const;
    /// False when they can't all be written. A dock that runs takes files in as they come, a second later, and orders
    /// itself anew by that: so they come in their order, and where none was set, what it sets is waited for and taken
    /// away
    /// (`isLive`: it runs).
    bool write(PanelStore& store, const std::string& key, const std::string& text, bool isLive) const;

    /// The paths of the programs' desktop entries, in the dock's order.
    static std::vector<std::string> entries(const std::string& text);
    /// Without the programs. What else a dock shows (a clock) stays.
    static std::string withoutPrograms(const std::string& text);
    /// What of `now` is neither in `had` nor made of it by leaving programs out, added to `had`; `had` as it is when
    /// there is no such thing.
    static std::string withAdded(const std::string& had, const std::string& now);

private:
    std::string folder_;
};

}
