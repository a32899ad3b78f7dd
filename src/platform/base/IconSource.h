#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// Where an icon's pixels come from. Nothing is decoded until it is painted. Two icons are the same picture when they
/// are the same object, so whoever hands out icons keeps one object for one picture.
struct IconSource {
    /// A picture file (SVG, PNG, XPM, …), by its full path.
    struct File {
        std::string path;
    };
    /// Pixels in memory: 32-bit ARGB, not premultiplied, row by row from the top.
    struct Pixels {
        int width = 0;
        int height = 0;
        std::vector<std::uint32_t> argb;
    };
    /// SVG text.
    struct Svg {
        std::string text;
    };
    /// A picture file's content.
    struct Packed {
        std::vector<unsigned char> bytes;
    };

    /// A picture that is looked for when it is first painted. Main thread.
    struct Deferred {
        /// Null when there is none. Never gives another deferred one.
        std::function<std::shared_ptr<const IconSource>()> find;
    };

    /// For pixels: the same picture in several sizes, at least one.
    std::variant<File, Svg, std::vector<Pixels>, Packed, Deferred> content;

    /// Pixels packed to be kept in little room, nearly as they were: 32-bit ARGB, premultiplied, row by row from the
    /// top. Null when it can't be done. Any thread.
    static std::shared_ptr<const IconSource> pack(const std::uint32_t* argb, int width, int height);
};
