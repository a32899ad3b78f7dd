#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace host {

/// A key being pressed. `key` is the number of the key's place on the keyboard, the same whatever the layout; `flags`
/// are the modifiers that were down: Shift 0x20000, Control 0x40000, Option 0x80000, Command 0x100000.
struct KeyPress {
    std::uint16_t key = 0;
    std::uint64_t flags = 0;
    bool operator==(const KeyPress&) const = default;
};

/// A key that a tap is about, and the modifiers that must be down and those that must not be for it to be shown. What
/// else is down, locks included, doesn't count.
struct TappedKey {
    std::uint16_t key = 0;
    std::uint64_t down = 0;
    std::uint64_t up = 0;

    bool matches(const KeyPress& press) const
    {
        return press.key == key && (press.flags & down) == down && (press.flags & up) == 0;
    }
};

/// The keyboard, before any program sees it; here, of a desktop that shows it to nobody. Main thread.
class Keyboard {
public:
    virtual ~Keyboard() = default;

    /// Has presses of these keys shown to `onPress`, while the tap is enabled; in place of those that were shown
    /// before. A key that another program has for itself is left out, with a line on standard error. False when no key
    /// can be watched at all.
    virtual bool tap(const std::vector<TappedKey>& /*keys*/) { return false; }
    virtual void enableTap(bool /*on*/) { }
    virtual bool isTapEnabled() { return false; }
    /// The names of the tapped keys that are left out, as far as the enabled tap has found.
    virtual std::vector<std::string> takenKeys() { return {}; }

    /// Set by the layer: a tapped key went down, or repeats. True swallows it: no other program sees it. False lets it
    /// pass: the focused program sees it once, as if nobody had watched. The keyboard waits for the answer.
    std::function<bool(const KeyPress&)> onPress;

    enum class TapEnd { timeout, userInput };
    /// Set by the layer: the desktop has disabled the tap.
    std::function<void(TapEnd)> onTapDisabled;

    /// Whether `post` can press this key.
    virtual bool canPost(std::uint16_t /*key*/) { return false; }
    /// Presses or releases a key as if the user did, with the Option and Command keys of `press.flags` around it.
    virtual void post(const KeyPress& /*press*/, bool /*isDown*/) { }
};

}
