#pragma once

#include "base/CGGeometry.h"
#include "look/Metrics.h"
#include "settings/Choices.h"

#include <array>
#include <optional>
#include <vector>

/// What a point of a bar is over: the position of a button, from 0, or one of these.
namespace BarHit {

inline constexpr int launcher = -1;
inline constexpr int showDesktop = -2;
inline constexpr int finder = -3;
inline constexpr int trash = -4;
inline constexpr int search = -5;

}

/// Where everything on a bar stands: the geometry of one bar of some size with some number of application buttons. A
/// value; points, origin at the bar's lower left corner, y up.
///
/// The components follow each other from the left, one padding apart. The area of the buttons hugs them, as far as
/// the others leave room; whatever stands behind it moves with the number of buttons, and spare room stays at the
/// right.
class BarLayout {
public:
    /// `components` are the visible ones, from left to right.
    BarLayout(CGSize size, const Metrics& metrics, const std::vector<BarComponent>& components, int buttonCount);
    /// By the user's settings, as of now.
    static BarLayout current(CGSize size, int buttonCount);

    CGSize size() const { return size_; }
    const Metrics& metrics() const { return metrics_; }

    /// The zero rectangle for a component that isn't visible.
    const CGRect& rect(BarComponent component) const { return rects_[static_cast<std::size_t>(component)]; }
    bool shows(BarComponent component) const { return rect(component).width > 0; }

    /// The cell of the nth application button. Cells go on past the end of their area when there are more than fit.
    CGRect buttonRect(int position) const;
    /// How many buttons fit; at least 1.
    int buttonCapacity() const;
    /// Which of the places 0 to `count` a button dragged to `pointX` lands at.
    int insertionIndex(int count, double pointX) const;

    /// The left edges of the lines in front of and behind the buttons.
    double leadingSeparatorX() const;
    double trailingSeparatorX() const;

    /// The box in front of the search text.
    CGRect magnifierBox() const;
    /// The frame of the text field in the search box.
    CGRect searchFieldRect() const;

    bool operator==(const BarLayout&) const = default;

    /// Where the thing of that `BarHit` value is.
    CGRect hitRect(int hit) const;
    /// What the point is over: a `BarHit` value; absent over nothing.
    std::optional<int> hit(CGPoint point) const;
    /// The position of the button under the point, whatever component may lie over it.
    std::optional<int> button(CGPoint point) const;

private:
    double width(BarComponent component) const;
    double appsWidth(const std::vector<BarComponent>& components) const;

    CGSize size_;
    Metrics metrics_;
    int buttonCount_;
    std::array<CGRect, 6> rects_;
};
