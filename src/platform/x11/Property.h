#pragma once

#include "x11/Atoms.h"
#include "x11/Reply.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace x11 {

/// A property of a window as it came from the server. Anybody may have written it, so access is checked: one of another
/// type or format than asked for reads as absent.
class Property {
public:
    explicit Property(Reply<xcb_get_property_reply_t> reply)
        : reply_(std::move(reply))
    {
    }

    bool exists() const { return reply_ && reply_->type != XCB_ATOM_NONE; }
    std::span<const std::uint32_t> numbers(xcb_atom_t type) const;
    std::optional<std::uint32_t> number(xcb_atom_t type) const;
    /// The bytes of a format-8 property of that type; empty otherwise.
    std::string_view bytes(xcb_atom_t type) const;
    /// Text in any of the encodings that titles come in, as valid UTF-8.
    std::string text(const Atoms& atoms) const;

private:
    Reply<xcb_get_property_reply_t> reply_;
};

/// `longs` bounds what is transferred, in units of four bytes.
xcb_get_property_cookie_t requestProperty(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, std::uint32_t longs);
Property awaitProperty(xcb_connection_t* connection, xcb_get_property_cookie_t cookie);

/// The start of the text, at most `limit` bytes of whole characters; bytes that are no UTF-8 become U+FFFD.
std::string validUtf8(std::string_view text, std::size_t limit);
std::string utf8FromLatin1(std::string_view text, std::size_t limit);

/// Titles are cut here, in bytes of UTF-8.
inline constexpr std::size_t textLimit = 4096;

}
