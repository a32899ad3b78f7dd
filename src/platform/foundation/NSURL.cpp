#include "foundation/NSURL.h"

#include <QByteArray>

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace {

constexpr std::string_view pathCharacters = "-._~/!$&'()*+,:=@";
constexpr std::string_view urlCharacters = "-._~/!$&'()*+,:;=@?#[]";

QByteArray bytes(std::string_view text)
{
    return { text.data(), static_cast<qsizetype>(text.size()) };
}

template <int (*isOfKind)(int)>
bool is(char character)
{
    return isOfKind(static_cast<unsigned char>(character)) != 0;
}

bool isPlain(char character, std::string_view others)
{
    const bool isAscii = static_cast<unsigned char>(character) < 0x80;
    return (isAscii && is<std::isalnum>(character)) || others.find(character) != others.npos;
}

bool isEscape(std::string_view text)
{
    return text.size() == 3 && text[0] == '%' && is<std::isxdigit>(text[1]) && is<std::isxdigit>(text[2]);
}

}

// Both ways by hand, as the library takes three times as long, and each running application and each tile of the Dock
// is one at every refresh.
NSURL NSURL::fileURLWithPath(std::string_view path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "file://";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlain(character, pathCharacters))
            text += character;
        else
            text += { '%', digits[byte >> 4], digits[byte & 15] };
    }
    return NSURL(std::move(text));
}

std::optional<NSURL> NSURL::URLWithString(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isPlain(text[i], urlCharacters) && !isEscape(text.substr(i, 3)))
            return std::nullopt;
    }
    return NSURL(std::string(text));
}

std::string NSURL::path() const
{
    std::string_view rest = text_;
    if (const auto scheme = rest.find("://"); scheme != rest.npos) {
        rest.remove_prefix(scheme + 3);
        rest.remove_prefix(std::min(rest.find('/'), rest.size()));
    }
    std::string path = QByteArray::fromPercentEncoding(bytes(rest.substr(0, rest.find_first_of("?#")))).toStdString();
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string NSURL::standardizedPath() const
{
    const std::string whole = path();
    const bool isStandard = whole.starts_with('/') && whole.find("//") == whole.npos && whole.find("/.") == whole.npos;
    // Nearly every path is, and the library is slow to find it.
    if (isStandard)
        return whole;
    const auto standard = std::filesystem::path('/' + whole).lexically_normal().relative_path();
    return '/' + (standard.has_filename() ? standard : standard.parent_path()).string();
}
