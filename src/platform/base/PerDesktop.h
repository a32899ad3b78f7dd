#pragma once

#include <memory>

namespace PerDesktop {

/// Has `end` run when the desktop goes.
void atEnd(void (*end)());
/// Drops every state, the youngest first. For whoever puts another desktop in force, while the old one still answers.
void endAll();

}

/// What a subsystem remembers of the desktop in force: made at its first use, dropped when the desktop goes.
///
/// Main thread. A block that runs elsewhere is given a reference to the state; the queue that it runs on is the last
/// member of that state, so that its thread has ended before the rest goes. An answer that may come after the desktop
/// has gone is awaited by a weak pointer: the state may derive from `std::enable_shared_from_this`.
template <class State>
State& perDesktop()
{
    static std::shared_ptr<State> state;
    if (!state) {
        state = std::make_shared<State>();
        PerDesktop::atEnd([] { state.reset(); });
    }
    return *state;
}
