#pragma once

#include <functional>
#include <memory>

/// A write whose reader has gone fails, and nothing more. Programs that are launched don't inherit that.
void outliveBrokenPipes();

/// While it lives, a signal that asks the process to end (SIGTERM, SIGINT, SIGHUP) is told on the main thread, by the
/// toolkit's event loop. One that whoever started the process had switched off stays so, and a second one of a kind
/// ends the process at once. Main thread.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals();

private:
    class Listener;

    std::unique_ptr<Listener> listener_;
};
