#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

class NSFont;
struct CGImage;
struct DrawingList;
struct IconSource;
enum class NSCompositingOperation;
enum class NSFontWeight;

/// The size and weight of a system symbol.
struct NSImageSymbolConfiguration {
    double pointSize;
    NSFontWeight weight;
    static NSImageSymbolConfiguration configuration(double pointSize, NSFontWeight weight)
    {
        return { pointSize, weight };
    }
    bool operator==(const NSImageSymbolConfiguration&) const = default;
};

/// A picture: an icon, a system symbol, or a recorded drawing. A shared, immutable value. Two images are equal when
/// they would paint the same: the same icon object, the same symbol alike configured, or the same drawing.
class NSImage {
public:
    /// An empty picture.
    NSImage();
    explicit NSImage(std::shared_ptr<const IconSource> icon);
    /// A captured picture that says it is `size` points large.
    NSImage(const CGImage& image, CGSize size);
    /// One of the bundled symbols, a template: only its shape counts. Absent when there is none of that name.
    static std::optional<NSImage> imageWithSystemSymbolName(const std::string& name, const std::string& description);
    /// Records what `handler` draws into the rectangle it is given, which is `size` at the origin.
    static NSImage imageWithSize(CGSize size, bool flipped, const std::function<bool(CGRect)>& handler);

    /// What it shows, for those who don't see it.
    const std::string& accessibilityDescription() const { return description_; }
    NSImage imageWithSymbolConfiguration(const NSImageSymbolConfiguration& configuration) const;

    /// Points. An icon is drawn at any size equally well and says 32 by 32 until it is told another.
    CGSize size() const;
    void setSize(CGSize size) { size_ = size; }

    /// Draws the whole picture into `rect` of the current context, over what is there.
    void drawInRect(const CGRect& rect) const { drawInRect(rect, 1.0); }
    void drawInRect(const CGRect& rect, double fraction) const;

    bool operator==(const NSImage& other) const;

    struct Symbol {
        std::string name;
        NSImageSymbolConfiguration configuration;
        bool operator==(const Symbol&) const = default;
    };
    struct Drawing {
        CGSize size;
        bool flipped;
        std::shared_ptr<const DrawingList> list;
        bool operator==(const Drawing& other) const;
    };
    /// What it is made of, for whoever paints it: exactly one of these is set, none in an empty picture.
    const std::shared_ptr<const IconSource>& icon() const { return icon_; }
    const std::optional<Symbol>& symbol() const { return symbol_; }
    const std::optional<Drawing>& drawing() const { return drawing_; }

private:
    std::shared_ptr<const IconSource> icon_;
    std::optional<Symbol> symbol_;
    std::optional<Drawing> drawing_;
    std::optional<CGSize> size_;
    std::string description_;
};
