#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace embedded {

/// On which line each value of a JSON text stands, which the toolkit's parser doesn't tell. A value's path is made of
/// keys and indexes: "windows/7/owner"; that of the whole is empty.
class JsonLines {
public:
    /// `text` must be sound JSON.
    explicit JsonLines(std::string_view text);

    /// From 1; of a key, the line of its value's beginning. A path that isn't there has the line of what would hold it.
    int lineOf(std::string path) const;

    struct Duplicate {
        int line = 0;
        std::string key;
    };
    /// The first key that its object has already.
    const std::optional<Duplicate>& duplicate() const { return duplicate_; }

    /// The line, from 1, of an offset in bytes.
    static int lineAt(std::string_view text, std::size_t offset);

private:
    class Scanner;

    std::map<std::string, int, std::less<>> lines_;
    std::optional<Duplicate> duplicate_;
};

}
