#include "x11/KeyPlaces.h"

#include "x11/Xkb.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>
#include <utility>

namespace x11 {
namespace {

struct NamedPlace {
    std::uint16_t key;
    std::string_view name;
};

/// By XKB's names: A to E are the rows from the bottom, the number counts from the left.
constexpr NamedPlace places[] = { { 18, "AE01" }, { 19, "AE02" }, { 20, "AE03" }, { 21, "AE04" }, { 23, "AE05" },
    { 22, "AE06" }, { 26, "AE07" }, { 28, "AE08" }, { 25, "AE09" }, { 11, "AB05" }, { 2, "AC03" }, { 49, "SPCE" } };

constexpr std::string_view optionKeyName = "LALT";
constexpr std::string_view commandKeyName = "LWIN";

using KeyNames = Reply<xcb_xkb_get_names_reply_t>;

/// The code of a key; 0 when there is none. The reply holds key names and nothing else.
xcb_keycode_t codeOf(const xcb_xkb_get_names_reply_t& names, std::string_view name)
{
    const auto* each = static_cast<const xcb_xkb_key_name_t*>(xcb_xkb_get_names_value_list(&names));
    for (unsigned i = 0; i < names.nKeys; ++i) {
        char text[sizeof each[i].name + 1] = {};
        std::memcpy(text, each[i].name, sizeof each[i].name);
        if (name == text)
            return static_cast<xcb_keycode_t>(names.firstKey + i);
    }
    return 0;
}

/// The position of a virtual modifier among those that there are; -1 when it isn't one of them. The reply holds the
/// names of virtual modifiers and nothing else.
int positionOf(const xcb_xkb_get_names_reply_t& names, xcb_atom_t modifier)
{
    const auto* each = static_cast<const xcb_atom_t*>(xcb_xkb_get_names_value_list(&names));
    for (int bit = 0, i = 0; bit < 16; ++bit) {
        if ((names.virtualMods >> bit & 1) != 0 && each[i++] == modifier)
            return bit;
    }
    return -1;
}

/// What a virtual modifier is made of; `otherwise` when it is made of nothing.
std::uint16_t modifierAt(const xcb_xkb_get_map_reply_t& map, int position, std::uint16_t otherwise)
{
    if (position < 0 || (map.virtualMods >> position & 1) == 0)
        return otherwise;
    const auto* each = static_cast<const std::uint8_t*>(xcb_xkb_get_map_map(&map));
    const unsigned before = map.virtualMods & ((1U << position) - 1U);
    const std::uint8_t modifiers = each[std::popcount(before)];
    return modifiers != 0 ? modifiers : otherwise;
}

using ModifierFlag = std::pair<std::uint16_t, std::uint64_t>;

std::array<ModifierFlag, 4> modifierFlags(const KeyPlaces& keyboard)
{
    return { ModifierFlag { XCB_MOD_MASK_SHIFT, 0x20000 }, { XCB_MOD_MASK_CONTROL, 0x40000 },
        { keyboard.option, 0x80000 }, { keyboard.command, 0x100000 } };
}

}

std::uint16_t KeyPlaces::modifiers(std::uint64_t flags) const
{
    unsigned result = 0;
    for (const auto& [modifier, flag] : modifierFlags(*this))
        result |= (flags & flag) != 0 ? modifier : 0U;
    return static_cast<std::uint16_t>(result);
}

std::uint64_t KeyPlaces::flags(std::uint16_t modifiers) const
{
    std::uint64_t result = 0;
    for (const auto& [modifier, flag] : modifierFlags(*this))
        result |= (modifiers & modifier) != 0 ? flag : 0;
    return result;
}

std::string_view nameOfPlace(std::uint16_t key)
{
    const auto place = std::ranges::find(places, key, &NamedPlace::key);
    return place == std::end(places) ? "?" : place->name;
}

// By hand, as this is one round trip for two names of modifiers and some of keys; the keymap library reads the whole
// keyboard, compiles it, and doesn't tell what a virtual modifier is made of but by trial.
KeyPlaces KeyPlaces::read(const Connection& connection)
{
    constexpr std::uint16_t device = XCB_XKB_ID_USE_CORE_KBD;
    const auto keysAsked = xcb_xkb_get_names(connection, device, XCB_XKB_NAME_DETAIL_KEY_NAMES);
    const auto modifiersAsked = xcb_xkb_get_names(connection, device, XCB_XKB_NAME_DETAIL_VIRTUAL_MOD_NAMES);
    const auto mapAsked = xcb_xkb_get_map(
        connection, device, XCB_XKB_MAP_PART_VIRTUAL_MODS, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFFFF, 0, 0, 0, 0, 0, 0);
    const KeyNames keys(xcb_xkb_get_names_reply(connection, keysAsked, nullptr));
    const KeyNames modifiers(xcb_xkb_get_names_reply(connection, modifiersAsked, nullptr));
    const Reply<xcb_xkb_get_map_reply_t> map(xcb_xkb_get_map_reply(connection, mapAsked, nullptr));

    KeyPlaces result;
    if (!keys)
        return result;
    for (const NamedPlace& place : places) {
        if (const xcb_keycode_t code = codeOf(*keys, place.name))
            result.codes.emplace(place.key, code);
    }
    result.optionKey = codeOf(*keys, optionKeyName);
    result.commandKey = codeOf(*keys, commandKeyName);
    if (modifiers && map) {
        result.option = modifierAt(*map, positionOf(*modifiers, connection.atoms().xkbAlt), result.option);
        result.command = modifierAt(*map, positionOf(*modifiers, connection.atoms().xkbSuper), result.command);
    }
    return result;
}

}
