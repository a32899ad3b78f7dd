#pragma once

#include "appkit/NSGraphicsContext.h"

#include <variant>
#include <vector>

namespace Drawing {
struct Fill {
    NSBezierPath path;
    NSColor color;
    NSCompositingOperation operation;
    bool operator==(const Fill&) const = default;
};
struct Stroke {
    NSBezierPath path;
    NSColor color;
    bool operator==(const Stroke&) const = default;
};
struct Gradient {
    NSBezierPath path;
    NSColor start;
    NSColor end;
    double angle;
    bool operator==(const Gradient&) const = default;
};
struct Image {
    NSImage image;
    CGRect rect;
    double fraction;
    bool operator==(const Image&) const = default;
};
struct Text {
    std::string text;
    CGPoint point;
    NSFont font;
    NSColor color;
    bool operator==(const Text&) const = default;
};
struct Save {
    bool operator==(const Save&) const = default;
};
struct Restore {
    bool operator==(const Restore&) const = default;
};
struct Shadow {
    NSShadow shadow;
    bool operator==(const Shadow&) const = default;
};
struct Clip {
    NSBezierPath path;
    bool operator==(const Clip&) const = default;
};

using Operation = std::variant<Fill, Stroke, Gradient, Image, Text, Save, Restore, Shadow, Clip>;
}

/// What was drawn, in order: a value that can be compared, and played back into another context.
struct DrawingList {
    std::vector<Drawing::Operation> operations;

    void replay(NSGraphicsContext& context) const;
    bool operator==(const DrawingList&) const = default;
};

/// The context that records.
class DrawingRecorder final : public NSGraphicsContext {
public:
    void fill(const NSBezierPath& path, const NSColor& color, NSCompositingOperation operation) override;
    void stroke(const NSBezierPath& path, const NSColor& color) override;
    void fillGradient(const NSBezierPath& path, const NSColor& start, const NSColor& end, double angle) override;
    void drawImage(const NSImage& image, const CGRect& rect, double fraction) override;
    void drawText(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color) override;
    void saveGraphicsState() override;
    void restoreGraphicsState() override;
    void setShadow(const NSShadow& shadow) override;
    void addClip(const NSBezierPath& path) override;

    DrawingList list;
};
