#pragma once

#include "host/Keyboard.h"

#include <optional>

class QKeyEvent;

namespace embedded {

/// The press as the keyboard's taps know it, on a keyboard with the usual letters; absent where no tap can ask for it.
std::optional<host::KeyPress> keyPressOf(const QKeyEvent& event);

}
