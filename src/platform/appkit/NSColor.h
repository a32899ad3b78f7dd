#pragma once

#include <optional>

/// The user has chosen another accent colour.
extern const char* const NSSystemColorsDidChangeNotification;

/// A colour in sRGB; calibrated white and calibrated RGB count as sRGB here. Components from 0 to 1.
class NSColor {
public:
    static NSColor colorWithCalibratedWhite(double white, double alpha) { return { white, white, white, alpha }; }
    static NSColor colorWithCalibratedRed(double r, double g, double b, double a) { return { r, g, b, a }; }
    static NSColor colorWithSRGBRed(double r, double g, double b, double a) { return { r, g, b, a }; }
    static NSColor white() { return { 1, 1, 1, 1 }; }
    static NSColor black() { return { 0, 0, 0, 1 }; }
    static NSColor clear() { return { 0, 0, 0, 0 }; }
    static NSColor systemRed() { return { 1, 0.231, 0.188, 1 }; }
    /// The user's accent colour, as of now.
    static NSColor controlAccentColor();

    double redComponent() const { return red_; }
    double greenComponent() const { return green_; }
    double blueComponent() const { return blue_; }
    double alphaComponent() const { return alpha_; }

    NSColor withAlphaComponent(double alpha) const { return { red_, green_, blue_, alpha }; }
    /// This colour moved `fraction` of the way to `other`, alpha included.
    NSColor blended(double fraction, const NSColor& other) const;

    /// Makes this the current context's colour for fills and strokes.
    void set() const;

    bool operator==(const NSColor&) const = default;

private:
    NSColor(double red, double green, double blue, double alpha)
        : red_(red)
        , green_(green)
        , blue_(blue)
        , alpha_(alpha)
    {
    }

    double red_;
    double green_;
    double blue_;
    double alpha_;
};
