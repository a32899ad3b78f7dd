#pragma once

#include "host/Keyboard.h"
#include "x11/KeyPlaces.h"

#include <optional>
#include <string>

namespace x11 {

/// The keyboard. Tapped keys are grabbed on the root, one grab for each state of the modifiers that don't count, and
/// freeze the keyboard until it is known whether they pass; one that passes is replayed as if there were no grab. Keys
/// are posted through the server's test extension.
class Keyboard final : public host::Keyboard {
public:
    /// `drainSoon` has events handled that waiting for a reply may have left in the queue.
    Keyboard(Connection& connection, std::function<void()> drainSoon);

    bool tap(const std::vector<host::TappedKey>& keys) override;
    void enableTap(bool on) override;
    bool isTapEnabled() override { return isEnabled_; }
    std::vector<std::string> takenKeys() override { return taken_; }
    bool canPost(std::uint16_t key) override;
    void post(const host::KeyPress& press, bool isDown) override;

    void handle(const xcb_generic_event_t& event);
    /// Follows a keyboard or layout that has changed. Whether it asked the server for anything.
    bool refresh();

private:
    bool learnPlaces();
    void handlePress(const xcb_key_press_event_t& event);
    void grabAll();
    void noteTaken(const host::TappedKey& key);
    bool isTaken(xcb_keycode_t modifierKey) const;
    std::uint64_t takenModifiers() const;
    void ungrabAll() const;
    std::vector<std::uint16_t> statesOf(const host::TappedKey& key) const;
    const host::TappedKey* tappedKey(xcb_keycode_t code, std::uint64_t flags) const;
    std::uint16_t modifiersDown() const;
    void fake(std::uint8_t type, xcb_keycode_t code) const;

    Connection& connection_;
    std::function<void()> drainSoon_;
    /// The keyboard extension's first event; absent until it was asked for, 0 without it.
    std::optional<std::uint8_t> firstEvent_;
    KeyPlaces places_;
    bool isStale_ = false;

    std::vector<host::TappedKey> tapped_;
    bool isEnabled_ = false;
    /// The names of those that other programs have.
    std::vector<std::string> taken_;
    /// The modifier keys that are held for a key that was posted.
    std::vector<xcb_keycode_t> held_;
};

}
