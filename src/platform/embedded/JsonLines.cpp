#include "embedded/JsonLines.h"

#include <algorithm>
#include <cstddef>

namespace embedded {

namespace {

std::string below(const std::string& path, const std::string& part)
{
    return path.empty() ? part : path + "/" + part;
}

}

/// Walks through the text once. It looks only at what tells values apart, since the text is known to be sound.
class JsonLines::Scanner {
public:
    Scanner(std::string_view text, JsonLines& lines)
        : text_(text)
        , lines_(lines)
    {
    }

    void value(const std::string& path)
    {
        skipSpace();
        lines_.lines_.emplace(path, line_);
        if (peek() == '{')
            object(path);
        else if (peek() == '[')
            array(path);
        else if (peek() == '"')
            string();
        else
            literal();
        skipSpace();
    }

private:
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    void skipSpace()
    {
        for (; at_ < text_.size() && (peek() == ' ' || peek() == '\t' || peek() == '\r' || peek() == '\n'); ++at_) {
            if (peek() == '\n')
                ++line_;
        }
    }

    /// Past the brackets of an object or array, its members one by one.
    template <class Member>
    void members(char close, Member member)
    {
        ++at_;
        for (skipSpace(); at_ < text_.size() && peek() != close; skipSpace()) {
            member();
            if (peek() == ',')
                ++at_;
        }
        ++at_;
    }

    void object(const std::string& path)
    {
        members('}', [&] {
            const int line = line_;
            const std::string key = string();
            const std::string place = below(path, key);
            if (lines_.lines_.contains(place) && !lines_.duplicate_)
                lines_.duplicate_ = Duplicate { line, key };
            skipSpace();
            ++at_; // The colon.
            value(place);
        });
    }

    void array(const std::string& path)
    {
        std::size_t index = 0;
        members(']', [&] { value(below(path, std::to_string(index++))); });
    }

    /// The string as it is written, without its quotes.
    std::string string()
    {
        const std::size_t begin = ++at_;
        for (; at_ < text_.size() && peek() != '"'; ++at_) {
            if (peek() == '\\')
                ++at_;
        }
        return std::string(text_.substr(begin, at_++ - begin));
    }

    void literal() { at_ = std::min(text_.find_first_of(",]} \t\r\n", at_), text_.size()); }

    std::string_view text_;
    JsonLines& lines_;
    std::size_t at_ = 0;
    int line_ = 1;
};

JsonLines::JsonLines(std::string_view text)
{
    Scanner(text, *this).value({});
}

int JsonLines::lineOf(std::string path) const
{
    for (;;) {
        const auto place = lines_.find(path);
        if (place != lines_.end())
            return place->second;
        const auto slash = path.rfind('/');
        path.resize(slash == std::string::npos ? 0 : slash);
    }
}

int JsonLines::lineAt(std::string_view text, std::size_t offset)
{
    const auto before = text.substr(0, offset);
    return 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
}

}
