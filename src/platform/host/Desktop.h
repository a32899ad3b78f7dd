#pragma once

#include <functional>
#include <string>

namespace host {

class Accessibility;
class Applications;
class Badges;
class Capture;
class Displays;
class Keyboard;
class LoginItem;
class Pointer;
class Processes;
class Session;
class StatusItems;
class Surfaces;
class Tools;
class Windows;

/// Everything the layer stands on: one desktop. Two exist, embedded/ and x11/; a third is one more folder beside them.
class Desktop {
public:
    virtual ~Desktop() = default;

    virtual Displays& displays() = 0;
    virtual Processes& processes() = 0;
    virtual Applications& applications() = 0;
    virtual Windows& windows() = 0;
    virtual Badges& badges() = 0;
    virtual Accessibility& accessibility() = 0;
    virtual Pointer& pointer() = 0;
    virtual Keyboard& keyboard() = 0;
    virtual Surfaces& surfaces() = 0;
    virtual Capture& capture() = 0;
    virtual Session& session() = 0;
    /// As they come, there is no tool, nothing starts at login, and status items show nowhere.
    virtual Tools& tools();
    virtual LoginItem& loginItem();
    virtual StatusItems& statusItems();

    /// Set by the application object: the desktop is gone (its server closed the connection, its window was closed) and
    /// the program must end.
    std::function<void(const std::string& reason)> onLost;

    /// Set by who opened the desktop: the program has been launched, and shows itself.
    std::function<void()> onShown;

    /// The desktop in force; one must have been set.
    static Desktop& current();
    static bool hasCurrent();
    /// Not owned. Null takes it away. What was remembered of another desktop is dropped first (`perDesktop`).
    static void setCurrent(Desktop* desktop);
};

}
