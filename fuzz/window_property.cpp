// What other programs say of their windows. The first three bytes are the property, its type and its format; the type
// is mostly one that means something, and the format may contradict it.

#include "Input.h"

#include "x11/WindowIcon.h"
#include "x11/WindowProperties.h"
#include "x11/XSettings.h"

#include <cstdlib>
#include <cstring>
#include <numeric>

namespace {

/// Each name another number, as on a server.
x11::Atoms numberedAtoms()
{
    x11::Atoms atoms;
    constexpr std::size_t count = sizeof atoms / sizeof(xcb_atom_t);
    xcb_atom_t numbers[count];
    std::iota(numbers, numbers + count, 100);
    std::memcpy(&atoms, numbers, sizeof atoms);
    return atoms;
}

/// A reply of the server's, as long as it says to be.
x11::Property property(xcb_atom_t type, std::uint8_t format, const std::uint8_t* data, std::size_t size)
{
    const std::size_t unit = format / 8;
    const std::size_t count = unit == 0 ? 0 : size / unit;
    auto* reply
        = static_cast<xcb_get_property_reply_t*>(std::calloc(1, sizeof(xcb_get_property_reply_t) + count * unit));
    reply->type = type;
    reply->format = format;
    reply->value_len = static_cast<std::uint32_t>(count);
    if (count > 0)
        std::memcpy(reply + 1, data, count * unit);
    return x11::Property(x11::Reply<xcb_get_property_reply_t>(reply));
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const x11::Atoms atoms = numberedAtoms();
    static const xcb_atom_t types[] = { XCB_ATOM_NONE, XCB_ATOM_ATOM, XCB_ATOM_CARDINAL, XCB_ATOM_STRING,
        XCB_ATOM_WINDOW, atoms.utf8String, atoms.compoundText, atoms.wmHints, atoms.wmState };
    static const std::uint8_t formats[] = { 8, 16, 32, 0 };
    constexpr std::size_t head = 3;
    if (size < head)
        return 0;
    const auto all = x11::windowProperties();
    const auto said
        = property(types[data[1] % std::size(types)], formats[data[2] % std::size(formats)], data + head, size - head);
    // Beyond those of the table: icons, and what a settings manager says.
    const std::size_t which = data[0] % (all.size() + 2);
    if (which < all.size()) {
        x11::WindowRecord window;
        all[which].apply(window, said, atoms);
    } else if (which == all.size()) {
        x11::iconPixels(said.numbers(XCB_ATOM_CARDINAL));
    } else {
        x11::readXSettings(Input::text(data + head, size - head));
    }
    return 0;
}
