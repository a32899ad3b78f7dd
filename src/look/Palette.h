#pragma once

#include "appkit/NSColor.h"

/// The fixed colours of the bar's furniture, the same in light and in dark appearance.
namespace Palette {

inline const NSColor barTint = NSColor::colorWithCalibratedWhite(0.1, 1.0);
/// The thin line along the bar's inner edge.
inline const NSColor topHairline = NSColor::colorWithCalibratedWhite(1.0, 0.12);
inline const NSColor hoverFill = NSColor::colorWithCalibratedWhite(1.0, 0.1);
/// Under the button of what wants to be looked at.
inline const NSColor attentionFill = NSColor::systemRed().withAlphaComponent(0.30);
inline const NSColor activeFill = NSColor::colorWithCalibratedWhite(1.0, 0.18);
inline const NSColor separator = NSColor::colorWithCalibratedWhite(1.0, 0.13);
inline const NSColor searchFill = NSColor::colorWithCalibratedWhite(1.0, 0.07);
inline const NSColor searchFillHover = NSColor::colorWithCalibratedWhite(1.0, 0.11);
inline const NSColor searchStroke = NSColor::colorWithCalibratedWhite(1.0, 0.13);
inline const NSColor searchIcon = NSColor::colorWithCalibratedWhite(1.0, 0.55);
inline const NSColor placeholder = NSColor::colorWithCalibratedWhite(1.0, 0.42);
/// The running indicator of a button that isn't frontmost.
inline const NSColor runningDot = NSColor::colorWithCalibratedWhite(0.7, 1.0);

/// Of the icon of a pinned application that isn't running.
inline constexpr double idleIconAlpha = 0.42;

}
