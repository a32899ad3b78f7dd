#pragma once

#include "appkit/NSColor.h"
#include "forms/ObservableObject.h"
#include "foundation/NSNotificationCenter.h"
#include "settings/Settings.h"

#include <cstddef>
#include <functional>
#include <vector>

/// A value that a control shows and changes.
template <class T>
struct Binding {
    std::function<T()> get;
    std::function<void(T)> set;
};

/// What the settings window reads and writes. It holds no values: each lies in `Settings` or with whoever it belongs
/// to. Those who show it hear of every change, whoever makes it. Main thread.
class SettingsStore final : public ObservableObject {
public:
    /// Made at its first use.
    static SettingsStore& shared();

    /// Of a setting, or of one of the pairs below.
    template <class S>
    Binding<typename S::Type> binding(const S& setting)
    {
        using Type = typename S::Type;
        return { [&setting] { return setting(); },
            [this, &setting](Type value) { change([&] { setting.set(value); }); } };
    }
    Binding<NSColor> barTint();
    /// The system's accent colour, or one of the user's own, which is the system's present one at first.
    Binding<bool> usesSystemAccent();
    Binding<NSColor> accentColour();
    /// Switched on it hides the Dock at once; switched off it undoes nothing by itself.
    Binding<bool> manageDock();

    std::size_t screenCount() const;
    bool windowSearchAvailable() const;
    bool dockMigrated() const;
    bool hasDockBackup() const;

    bool isVisible(BarComponent component) const;
    void setVisible(BarComponent component, bool visible);
    /// Changes places with the neighbour on that side; nothing at the end of the row.
    void move(BarComponent component, int offset);

    SettingsStore();
    ~SettingsStore();

private:
    void change(const std::function<void()>& write);
    void tellUnsaved();

    std::vector<NSNotificationCenter::Token> observers_;
    bool hasToldUnsaved_ = false;
};
