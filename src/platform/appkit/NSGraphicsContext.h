#pragma once

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "base/CGGeometry.h"

#include <optional>
#include <string>
#include <string_view>

struct NSShadow {
    NSColor color;
    double blurRadius = 0;
    CGSize offset;
    bool operator==(const NSShadow&) const = default;
};

/// Where drawing goes. Two kinds exist: one that records the operations (DrawingList.h), one that paints them. Every
/// view's drawing is recorded first and painted from the record. Main thread.
class NSGraphicsContext {
public:
    virtual ~NSGraphicsContext() = default;

    /// The context in force while a view draws; null outside of that.
    static NSGraphicsContext* current();

    virtual void fill(const NSBezierPath& path, const NSColor& color, NSCompositingOperation operation) = 0;
    virtual void stroke(const NSBezierPath& path, const NSColor& color) = 0;
    virtual void fillGradient(const NSBezierPath& path, const NSColor& start, const NSColor& end, double angle) = 0;
    virtual void drawImage(const NSImage& image, const CGRect& rect, double fraction) = 0;
    virtual void drawText(std::string_view text, CGPoint point, const NSFont& font, const NSColor& color) = 0;
    virtual void saveGraphicsState() = 0;
    virtual void restoreGraphicsState() = 0;
    /// Falls from what is drawn until the state is restored.
    virtual void setShadow(const NSShadow& shadow) = 0;
    /// Narrows what is drawn until the state is restored.
    virtual void addClip(const NSBezierPath& path) = 0;

    NSCompositingOperation compositingOperation() const { return NSCompositingOperation::sourceOver; }

    NSColor color = NSColor::black();

    /// Makes a context current for as long as it lives.
    class Scope {
    public:
        explicit Scope(NSGraphicsContext& context);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        NSGraphicsContext* previous_;
    };
};
