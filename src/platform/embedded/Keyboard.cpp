#include "embedded/Keyboard.h"

#include "base/RunLoop.h"

#include <algorithm>

namespace embedded {

bool Keyboard::tap(const std::vector<host::TappedKey>& keys)
{
    if (world_.faults().keyTapMissing)
        return false;
    tapped_ = keys;
    return true;
}

bool Keyboard::isSwallowed(const host::KeyPress& press)
{
    const bool isShown
        = isEnabled_ && std::ranges::any_of(tapped_, [&](const host::TappedKey& key) { return key.matches(press); });
    return isShown && onPress && onPress(press);
}

bool Keyboard::press(const host::KeyPress& press)
{
    const RunLoop::Turn turn;
    if (isSwallowed(press))
        return false;
    const auto front = world_.frontmost();
    const Window* focused = front ? world_.focusedWindow(*front) : nullptr;
    log_.add({ .pid = front.value_or(0),
        .window = focused ? focused->number : 0,
        .name = "key",
        .value = static_cast<double>(press.key) });
    return true;
}

void Keyboard::post(const host::KeyPress& press, bool isDown)
{
    log_.add({ .name = isDown ? "postKeyDown" : "postKeyUp", .value = static_cast<double>(press.key) });
    if (isDown)
        this->press(press);
}

void Keyboard::disableTap(TapEnd end)
{
    isEnabled_ = false;
    const RunLoop::Turn turn;
    if (onTapDisabled)
        onTapDisabled(end);
}

}
