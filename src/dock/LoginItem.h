#pragma once

/// Whether the program starts at login. The system remembers where the program was when it was told; so does this, and
/// tells it again after a move. Main thread.
namespace LoginItem {

bool isEnabled();
void setEnabled(bool enabled);
/// Mends a registration of a program that has been moved since. Call at launch.
void reconcile();

}

namespace Settings {

/// Kept by the system rather than in the settings' store.
inline constexpr struct LaunchAtLogin {
    using Type = bool;
    bool operator()() const;
    void set(bool launch) const;
} launchAtLogin;

}
