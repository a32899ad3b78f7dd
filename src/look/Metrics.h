#pragma once

#include "settings/Choices.h"

#include <cmath>

/// Every size of a bar in points, at one size class: a base value times the class's scale, rounded to the nearest whole
/// point, halves away from zero.
class Metrics {
public:
    explicit Metrics(BarSize size);
    /// At the size class that the user has chosen, as of now.
    static Metrics current();

    bool operator==(const Metrics&) const = default;

    double scale() const { return scale_; }
    double scaled(double base) const { return std::round(base * scale_); }

    /// Of a bar; also the area that the bar reserves.
    double barHeight() const { return scaled(52); }
    /// Between neighbouring components, and at the bar's left end.
    double edgePadding() const { return scaled(8); }
    double searchWidth() const { return scaled(160); }
    double searchHeight() const { return scaled(26); }
    double searchRadius() const { return scaled(6); }
    /// Between a button's cell and its highlight.
    double pillInset() const { return scaled(4); }
    double pillRadius() const { return scaled(9); }
    double indicatorWidth() const { return scaled(16); }
    double indicatorHeight() const { return scaled(3); }
    /// The room that a separator takes.
    double separatorWidth() const { return scaled(15); }
    double trashWidth() const { return scaled(46); }
    double itemWidth() const { return scaled(46); }
    double iconSize() const { return scaled(26); }
    /// The size of the search box's text.
    double searchFont() const { return scaled(12); }

    /// Between a window and the bar, the same at every size.
    static constexpr double windowGap = 5.0;

private:
    double scale_;
};
