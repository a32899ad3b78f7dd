#pragma once

#include "x11/Connection.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <string_view>

namespace x11 {

/// Where the keys that the program speaks of are on this keyboard, and which modifiers stand for Option and Command.
/// Keys are found by XKB's names of their places, so the layout doesn't matter.
struct KeyPlaces {
    /// The server's key code by the program's number of the key; keys that the keyboard lacks are left out.
    std::map<std::uint16_t, xcb_keycode_t> codes;
    std::uint16_t option = XCB_MOD_MASK_1;
    std::uint16_t command = XCB_MOD_MASK_4;
    /// The keys that hold the two; 0 where there is none.
    xcb_keycode_t optionKey = 0;
    xcb_keycode_t commandKey = 0;

    bool operator==(const KeyPlaces&) const = default;

    /// The modifier bits of the platform's flags, and the other way round.
    std::uint16_t modifiers(std::uint64_t flags) const;
    std::uint64_t flags(std::uint16_t modifiers) const;

    /// Asks the server, in one round trip. Without the keyboard extension there are no codes.
    static KeyPlaces read(const Connection& connection);
};

/// The keyboard extension's name of a key's place ("AE01"), for messages; "?" for one that isn't known here.
std::string_view nameOfPlace(std::uint16_t key);

}
