#include "x11/Keyboard.h"

#include "x11/Xkb.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace x11 {
namespace {

/// All bits that the state of modifiers has.
constexpr std::uint16_t allModifiers = 0xFF;

std::string nameOf(const host::TappedKey& key)
{
    std::string name;
    for (const auto& [flag, text] : { std::pair { 0x80000, "Alt+" }, std::pair { 0x100000, "Super+" } })
        name += (key.down & static_cast<std::uint64_t>(flag)) != 0 ? text : "";
    return name + std::string(nameOfPlace(key.key));
}

}

Keyboard::Keyboard(Connection& connection, std::function<void()> drainSoon)
    : connection_(connection)
    , drainSoon_(std::move(drainSoon))
{
}

/// Reads the keyboard once. False when the server has no keyboard extension.
bool Keyboard::learnPlaces()
{
    if (firstEvent_)
        return *firstEvent_ != 0;
    firstEvent_ = 0;
    const auto* extension = connection_.extension(xcb_xkb_id);
    if (!extension)
        return false;
    const Reply<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(
        connection_, xcb_xkb_use_extension(connection_, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!use || !use->supported)
        return false;
    firstEvent_ = extension->first_event;
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    xcb_xkb_select_events(connection_, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, 0xFFFF, 0xFFFF, nullptr);
    places_ = KeyPlaces::read(connection_);
    drainSoon_();
    return true;
}

bool Keyboard::refresh()
{
    if (!std::exchange(isStale_, false))
        return false;
    // A program that types through the server's test extension changes the keyboard in force, to one that is the same.
    KeyPlaces places = KeyPlaces::read(connection_);
    if (places == places_)
        return true;
    if (isEnabled_)
        ungrabAll();
    places_ = std::move(places);
    if (isEnabled_)
        grabAll();
    return true;
}

// The tap

bool Keyboard::tap(const std::vector<host::TappedKey>& keys)
{
    if (!learnPlaces())
        return false;
    enableTap(false);
    tapped_ = keys;
    return true;
}

void Keyboard::enableTap(bool on)
{
    if (on == isEnabled_)
        return;
    isEnabled_ = on;
    if (on)
        grabAll();
    else
        ungrabAll();
}

/// Every state in which the key counts: grabs name the whole state, locks and unused modifiers included.
std::vector<std::uint16_t> Keyboard::statesOf(const host::TappedKey& key) const
{
    const unsigned down = places_.modifiers(key.down);
    const unsigned up = places_.modifiers(key.up);
    std::vector<std::uint16_t> states;
    for (unsigned state = 0; state <= allModifiers; ++state) {
        if ((state & down) == down && (state & up) == 0)
            states.push_back(static_cast<std::uint16_t>(state));
    }
    return states;
}

void Keyboard::grabAll()
{
    std::vector<std::pair<const host::TappedKey*, xcb_void_cookie_t>> asked;
    for (const host::TappedKey& key : tapped_) {
        const auto code = places_.codes.find(key.key);
        if (code == places_.codes.end())
            continue;
        for (const std::uint16_t state : statesOf(key))
            asked.emplace_back(&key,
                xcb_grab_key_checked(
                    connection_, 0, connection_.root(), state, code->second, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
    taken_.clear();
    for (const auto& [key, cookie] : asked) {
        if (const Reply<xcb_generic_error_t> error { xcb_request_check(connection_, cookie) })
            noteTaken(*key);
    }
    const std::uint64_t modifiers = takenModifiers();
    for (const host::TappedKey& key : tapped_) {
        if ((key.down & modifiers) != 0)
            noteTaken(key);
    }
    drainSoon_();
}

/// Of one key many grabs can fail; it is named once.
void Keyboard::noteTaken(const host::TappedKey& key)
{
    const std::string name = nameOf(key);
    if (std::ranges::find(taken_, name) != taken_.end())
        return;
    std::fprintf(stderr, "vantry: another program has %s for itself\n", name.c_str());
    taken_.push_back(name);
}

/// Whether another program has a modifier's own key. From when that goes down, the keyboard is that program's.
bool Keyboard::isTaken(xcb_keycode_t modifierKey) const
{
    if (modifierKey == 0)
        return false;
    const auto request = xcb_grab_key_checked(
        connection_, 0, connection_.root(), XCB_MOD_MASK_ANY, modifierKey, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection_, request));
    if (!error)
        xcb_ungrab_key(connection_, modifierKey, connection_.root(), XCB_MOD_MASK_ANY);
    return error != nullptr;
}

/// The flags of Option and Command where another program has the key.
std::uint64_t Keyboard::takenModifiers() const
{
    const unsigned taken
        = (isTaken(places_.optionKey) ? places_.option : 0U) | (isTaken(places_.commandKey) ? places_.command : 0U);
    return places_.flags(static_cast<std::uint16_t>(taken));
}

void Keyboard::ungrabAll() const
{
    for (const auto& [key, code] : places_.codes)
        xcb_ungrab_key(connection_, code, connection_.root(), XCB_MOD_MASK_ANY);
    connection_.flush();
}

const host::TappedKey* Keyboard::tappedKey(xcb_keycode_t code, std::uint64_t flags) const
{
    const auto isIt = [&](const host::TappedKey& key) {
        const auto place = places_.codes.find(key.key);
        return place != places_.codes.end() && place->second == code && key.matches({ key.key, flags });
    };
    const auto found = std::ranges::find_if(tapped_, isIt);
    return found == tapped_.end() ? nullptr : &*found;
}

void Keyboard::handle(const xcb_generic_event_t& event)
{
    const auto type = event.response_type & ~0x80;
    if (type == XCB_KEY_PRESS)
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
    else if (firstEvent_.value_or(0) != 0 && type == *firstEvent_)
        isStale_ = true; // Only changes of the keyboard were selected.
    else if (type == XCB_MAPPING_NOTIFY)
        isStale_ = firstEvent_.value_or(0) != 0;
}

void Keyboard::handlePress(const xcb_key_press_event_t& event)
{
    const std::uint64_t flags = places_.flags(event.state & allModifiers);
    const host::TappedKey* key = tappedKey(event.detail, flags);
    const bool isSwallowed = key && isEnabled_ && onPress && onPress({ key->key, flags });
    // The grab ends at once rather than with the key's release: other keys pressed meanwhile are the focused program's.
    if (isSwallowed)
        xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    else
        xcb_allow_events(connection_, XCB_ALLOW_REPLAY_KEYBOARD, XCB_CURRENT_TIME);
    connection_.flush();
}

// Posted keys

bool Keyboard::canPost(std::uint16_t key)
{
    return learnPlaces() && places_.codes.contains(key) && connection_.extension(xcb_test_id);
}

std::uint16_t Keyboard::modifiersDown() const
{
    const Reply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    drainSoon_();
    return state ? state->mods : std::uint16_t(0);
}

void Keyboard::fake(std::uint8_t type, xcb_keycode_t code) const
{
    xcb_test_fake_input(connection_, type, code, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

void Keyboard::post(const host::KeyPress& press, bool isDown)
{
    if (!canPost(press.key))
        return;
    const xcb_keycode_t code = places_.codes.at(press.key);
    if (!isDown) {
        fake(XCB_KEY_RELEASE, code);
        for (const xcb_keycode_t modifier : std::exchange(held_, {}))
            fake(XCB_KEY_RELEASE, modifier);
        connection_.flush();
        return;
    }
    const unsigned missing = places_.modifiers(press.flags) & ~unsigned(modifiersDown());
    for (const auto& [modifier, key] :
        { std::pair { places_.option, places_.optionKey }, std::pair { places_.command, places_.commandKey } }) {
        if ((missing & modifier) == 0 || key == 0)
            continue;
        fake(XCB_KEY_PRESS, key);
        held_.push_back(key);
    }
    fake(XCB_KEY_PRESS, code);
    connection_.flush();
}

}
