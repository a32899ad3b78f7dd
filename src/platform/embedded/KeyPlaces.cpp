#include "embedded/KeyPlaces.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>
#include <utility>

namespace embedded {

namespace {

/// Keys and the numbers of their places.
constexpr std::pair<int, std::uint16_t> places[] = {
    { Qt::Key_A, 0 },
    { Qt::Key_S, 1 },
    { Qt::Key_D, 2 },
    { Qt::Key_F, 3 },
    { Qt::Key_H, 4 },
    { Qt::Key_G, 5 },
    { Qt::Key_Z, 6 },
    { Qt::Key_X, 7 },
    { Qt::Key_C, 8 },
    { Qt::Key_V, 9 },
    { Qt::Key_B, 11 },
    { Qt::Key_Q, 12 },
    { Qt::Key_W, 13 },
    { Qt::Key_E, 14 },
    { Qt::Key_R, 15 },
    { Qt::Key_Y, 16 },
    { Qt::Key_T, 17 },
    { Qt::Key_1, 18 },
    { Qt::Key_2, 19 },
    { Qt::Key_3, 20 },
    { Qt::Key_4, 21 },
    { Qt::Key_6, 22 },
    { Qt::Key_5, 23 },
    { Qt::Key_9, 25 },
    { Qt::Key_7, 26 },
    { Qt::Key_8, 28 },
    { Qt::Key_0, 29 },
    { Qt::Key_O, 31 },
    { Qt::Key_U, 32 },
    { Qt::Key_I, 34 },
    { Qt::Key_P, 35 },
    { Qt::Key_L, 37 },
    { Qt::Key_J, 38 },
    { Qt::Key_K, 40 },
    { Qt::Key_N, 45 },
    { Qt::Key_M, 46 },
};

/// The platform's modifiers by the toolkit's.
constexpr std::pair<Qt::KeyboardModifier, std::uint64_t> modifiers[] = {
    { Qt::ShiftModifier, 0x20000 },
    { Qt::ControlModifier, 0x40000 },
    { Qt::AltModifier, 0x80000 },
    { Qt::MetaModifier, 0x100000 },
};

}

std::optional<host::KeyPress> keyPressOf(const QKeyEvent& event)
{
    const auto place = std::ranges::find(places, event.key(), &std::pair<int, std::uint16_t>::first);
    if (place == std::end(places))
        return std::nullopt;
    host::KeyPress press { place->second, 0 };
    for (const auto& [modifier, flag] : modifiers)
        press.flags |= event.modifiers().testFlag(modifier) ? flag : 0;
    return press;
}

}
