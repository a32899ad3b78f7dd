#pragma once

#include "base/CGGeometry.h"

#include "appkit/NSColor.h"

enum class NSCompositingOperation { sourceOver, sourceAtop };

/// A rectangle with round corners: the one shape the program draws.
class NSBezierPath {
public:
    static NSBezierPath roundedRect(const CGRect& rect, double xRadius, double yRadius)
    {
        return { rect, xRadius, yRadius };
    }
    static NSBezierPath rect(const CGRect& rect) { return { rect, 0, 0 }; }

    void setLineWidth(double width) { lineWidth_ = width; }
    /// With the current context's colour.
    void fill() const;
    void stroke() const;

    const CGRect& bounds() const { return rect_; }
    double xRadius() const { return xRadius_; }
    double yRadius() const { return yRadius_; }
    double lineWidth() const { return lineWidth_; }

    bool operator==(const NSBezierPath&) const = default;

private:
    NSBezierPath(const CGRect& rect, double xRadius, double yRadius)
        : rect_(rect)
        , xRadius_(xRadius)
        , yRadius_(yRadius)
    {
    }

    CGRect rect_;
    double xRadius_;
    double yRadius_;
    double lineWidth_ = 1.0;
};

/// A two-colour linear gradient.
class NSGradient {
public:
    NSGradient(const NSColor& start, const NSColor& end)
        : start_(start)
        , end_(end)
    {
    }
    /// `angle` in degrees, counterclockwise from the x axis: at -90 the start is at the top, at 90 at the bottom.
    void drawInBezierPath(const NSBezierPath& path, double angle) const;

private:
    NSColor start_;
    NSColor end_;
};

/// Fills a rectangle with the current context's colour.
void NSRectFillUsingOperation(const CGRect& rect, NSCompositingOperation operation);
