#include "x11/Property.h"

#include <algorithm>

namespace x11 {
namespace {

/// The length of the character at the start of the text; 0 when it is none.
std::size_t characterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1
        : lead < 0xC2                      ? 0
        : lead < 0xE0                      ? 2
        : lead < 0xF0                      ? 3
        : lead < 0xF5                      ? 4
                                           : 0;
    if (length == 0 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    }
    const bool isOverlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool isOutOfRange = (lead == 0xED && byte(1) >= 0xA0) || (lead == 0xF4 && byte(1) >= 0x90);
    return isOverlong || isOutOfRange ? 0 : length;
}

/// Compound text without its escape sequences: right for Latin text, harmless for the rest.
std::string withoutEscapes(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\x1b') {
            plain += text[i];
            continue;
        }
        while (i + 1 < text.size() && text[i + 1] >= 0x20 && text[i + 1] <= 0x2f)
            ++i;
        ++i;
    }
    return plain;
}

}

std::string validUtf8(std::string_view text, std::size_t limit)
{
    static constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string result;
    while (!text.empty() && text.front() != '\0') {
        const std::size_t length = characterLength(text);
        const std::string_view character = length == 0 ? replacement : text.substr(0, length);
        if (result.size() + character.size() > limit)
            break;
        result += character;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string utf8FromLatin1(std::string_view text, std::size_t limit)
{
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const std::size_t length = byte < 0x80 ? 1 : 2;
        if (byte == 0 || result.size() + length > limit)
            break;
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | (byte >> 6));
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

std::span<const std::uint32_t> Property::numbers(xcb_atom_t type) const
{
    if (!exists() || reply_->type != type || reply_->format != 32)
        return {};
    return { static_cast<const std::uint32_t*>(xcb_get_property_value(reply_.get())), reply_->value_len };
}

std::optional<std::uint32_t> Property::number(xcb_atom_t type) const
{
    const auto all = numbers(type);
    return all.empty() ? std::nullopt : std::optional(all.front());
}

std::string_view Property::bytes(xcb_atom_t type) const
{
    if (!exists() || reply_->type != type || reply_->format != 8)
        return {};
    return { static_cast<const char*>(xcb_get_property_value(reply_.get())), reply_->value_len };
}

std::string Property::text(const Atoms& atoms) const
{
    if (const auto utf8 = bytes(atoms.utf8String); !utf8.empty())
        return validUtf8(utf8, textLimit);
    if (const auto latin1 = bytes(XCB_ATOM_STRING); !latin1.empty())
        return utf8FromLatin1(latin1, textLimit);
    return utf8FromLatin1(withoutEscapes(bytes(atoms.compoundText)), textLimit);
}

xcb_get_property_cookie_t requestProperty(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, std::uint32_t longs)
{
    return xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longs);
}

Property awaitProperty(xcb_connection_t* connection, xcb_get_property_cookie_t cookie)
{
    return Property(Reply<xcb_get_property_reply_t>(xcb_get_property_reply(connection, cookie, nullptr)));
}

}
