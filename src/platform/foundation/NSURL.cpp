#include "foundation/NSURL.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace {

constexpr std::string_view filePrefix = "file://";
constexpr std::string_view pathCharacters = "-._~/!$&'()*+,:=@";
constexpr std::string_view urlCharacters = "-._~/!$&'()*+,:;=@?#[]%";

bool isOneOf(std::string_view set, char character)
{
    return std::isalnum(static_cast<unsigned char>(character)) || set.find(character) != set.npos;
}

std::optional<int> hexDigit(char character)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto place = digits.find(static_cast<char>(std::tolower(static_cast<unsigned char>(character))));
    if (place == digits.npos)
        return std::nullopt;
    return static_cast<int>(place);
}

std::optional<char> escapeAt(std::string_view text, std::size_t percent)
{
    if (percent + 2 >= text.size())
        return std::nullopt;
    const auto high = hexDigit(text[percent + 1]);
    const auto low = hexDigit(text[percent + 2]);
    if (!high || !low)
        return std::nullopt;
    return static_cast<char>(*high * 16 + *low);
}

std::string escaped(std::string_view path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char character : path) {
        if (isOneOf(pathCharacters, character)) {
            result += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        result += { '%', digits[byte / 16], digits[byte % 16] };
    }
    return result;
}

std::string unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto character = text[i] == '%' ? escapeAt(text, i) : std::nullopt;
        result += character.value_or(text[i]);
        i += character ? 2 : 0;
    }
    return result;
}

std::vector<std::string_view> partsOf(std::string_view path)
{
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const auto slash = std::min(path.find('/'), path.size());
        const auto part = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (part == ".." && !parts.empty())
            parts.pop_back();
        else if (!part.empty() && part != "." && part != "..")
            parts.push_back(part);
    }
    return parts;
}

}

NSURL NSURL::fileURLWithPath(std::string_view path)
{
    return NSURL(std::string(filePrefix) + escaped(path));
}

std::optional<NSURL> NSURL::URLWithString(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool sound = text[i] == '%' ? escapeAt(text, i).has_value() : isOneOf(urlCharacters, text[i]);
        if (!sound)
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
    std::string path = unescaped(rest.substr(0, rest.find_first_of("?#")));
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string NSURL::standardizedPath() const
{
    const std::string whole = path();
    std::string result;
    for (const auto part : partsOf(whole))
        result.append("/").append(part);
    return result.empty() ? "/" : result;
}
