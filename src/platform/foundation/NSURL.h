#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A URL; the program knows file URLs and links.
class NSURL {
public:
    static NSURL fileURLWithPath(std::string_view path);
    /// Absent when the text is empty, holds a character that no URL may hold, or a broken percent escape.
    static std::optional<NSURL> URLWithString(std::string_view text);

    const std::string& absoluteString() const { return text_; }
    /// The path with its percent escapes undone and without a slash at its end.
    std::string path() const;
    /// The path of the standardised file URL: ".", ".." and doubled slashes taken out. Symbolic links stay.
    std::string standardizedPath() const;

    bool operator==(const NSURL&) const = default;

private:
    explicit NSURL(std::string text)
        : text_(std::move(text))
    {
    }

    std::string text_;
};
