#include "x11/Property.h"

#include <QString>

#include <glib.h>

#include <memory>

namespace x11 {
namespace {

/// The start of it, at most `limit` bytes of whole characters.
std::string limited(std::string text, std::size_t limit)
{
    if (text.size() > limit)
        text.erase(g_utf8_find_prev_char(text.c_str(), text.c_str() + limit + 1) - text.c_str());
    return text;
}

std::string_view untilNull(std::string_view text)
{
    return text.substr(0, text.find('\0'));
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
    text = untilNull(text);
    const std::unique_ptr<char, decltype(&g_free)> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
    return limited(valid.get(), limit);
}

std::string utf8FromLatin1(std::string_view text, std::size_t limit)
{
    text = untilNull(text);
    return limited(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).toStdString(), limit);
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
