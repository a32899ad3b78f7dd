#pragma once

#include "embedded/CallLog.h"
#include "embedded/World.h"
#include "host/Keyboard.h"

namespace embedded {

/// The keyboard, where the view or a test types. A press that no tap claims goes to the focused window of the frontmost
/// process: the call log has it as "key", its value the key's number. Main thread.
class Keyboard final : public host::Keyboard {
public:
    Keyboard(World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    bool tap(const std::vector<host::TappedKey>& keys) override;
    void enableTap(bool on) override { isEnabled_ = on; }
    bool isTapEnabled() override { return isEnabled_; }
    std::vector<std::string> takenKeys() override { return world_.faults().takenKeys; }
    bool canPost(std::uint16_t key) override { return key < keyCount; }
    void post(const host::KeyPress& press, bool isDown) override;

    /// Whether the tap takes the press for itself.
    bool isSwallowed(const host::KeyPress& press);
    /// A user presses a key. Whether it came to the focused program.
    bool press(const host::KeyPress& press);
    /// What the desktop does with a tap that answers late, or on the user's word.
    void disableTap(TapEnd end);

private:
    static constexpr std::uint16_t keyCount = 128;

    World& world_;
    CallLog& log_;
    std::vector<host::TappedKey> tapped_;
    bool isEnabled_ = false;
};

}
