#pragma once

#include "base/CGGeometry.h"

#include <string_view>

enum class NSFontWeight { regular, medium, semibold };

/// The system font in some size (points) and weight.
class NSFont {
public:
    static NSFont systemFont(double size, NSFontWeight weight = NSFontWeight::regular) { return { size, weight }; }

    double pointSize() const { return size_; }
    NSFontWeight weight() const { return weight_; }
    /// Above the baseline.
    double ascender() const;
    /// Below the baseline, negative.
    double descender() const;
    double leading() const;

    bool operator==(const NSFont&) const = default;

private:
    NSFont(double size, NSFontWeight weight)
        : size_(size)
        , weight_(weight)
    {
    }

    double size_;
    NSFontWeight weight_;
};

class NSColor;

/// How large a line of text is when drawn in that font, in points.
CGSize sizeWithAttributes(std::string_view text, const NSFont& font);
/// Draws a line of text into the current context. `point` is the lower left corner of the line's box in a view that
/// isn't flipped, the upper left in one that is.
void drawAtPoint(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color);
