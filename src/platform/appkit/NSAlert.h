#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What the first button answers; the next ones follow in order.
inline constexpr int NSAlertFirstButtonReturn = 1000;

/// A question to the user. It is modal to the window that it is about and to nothing else: timers, other windows and
/// whatever else the program does go on. Main thread.
struct NSAlert {
    std::string messageText;
    std::string informativeText;
    /// At least one. Return chooses the first; Escape, or closing the alert, the last.
    std::vector<std::string> buttons;

    /// Shows it, with the keyboard, over the program's ordinary window if that is in use, and returns at once. `done`
    /// is called when it has gone. One that asks the same already comes to the front instead, and `done` never is.
    void begin(std::function<void(int response)> done) const;

    /// The one that asks now, the latest of several.
    static std::optional<NSAlert> open();
    /// Chooses a button of that one, as a click on it does.
    static void answer(std::size_t button);

    bool operator==(const NSAlert&) const = default;
};
