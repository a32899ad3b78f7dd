#pragma once

#include <functional>

/// Something that others show and that tells them when it changes. Main thread.
class ObservableObject {
public:
    /// Called before a change; what is read in a later turn has it. Set by who shows it.
    std::function<void()> objectWillChange;

protected:
    void willChange() const
    {
        if (objectWillChange)
            objectWillChange();
    }
};
