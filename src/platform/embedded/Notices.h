#pragma once

#include "embedded/Later.h"
#include "host/Processes.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace embedded {

/// What the desktop has to tell. As on a real desktop news arrives by the run loop: all that came up in one turn is
/// told in the next, processes first, in order. Main thread.
class Notices {
public:
    using Record = std::shared_ptr<const host::Process>;

    void process(host::ProcessEvent event, Record process);
    void windowsChanged();
    void displaysChanged();
    /// What is still to be told never will be.
    void forget();
    /// Something that can be seen changed; told at once, and often.
    void sceneChanged() const;

    std::function<void(host::ProcessEvent, const Record&)> onProcess;
    std::function<void()> onWindows;
    std::function<void()> onDisplays;
    std::function<void()> onScene;

private:
    void tellLater();
    void tell();

    std::vector<std::pair<host::ProcessEvent, Record>> processes_;
    bool windows_ = false;
    bool displays_ = false;
    bool pending_ = false;
    Later later_;
};

}
