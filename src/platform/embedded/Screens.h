#pragma once

#include "embedded/Scenario.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace embedded {

/// An attached display and the spaces on it.
struct Screen {
    std::optional<std::uint32_t> number;
    std::optional<std::string> uuid;
    /// Screen space.
    CGRect frame;
    double menuBarHeight = 0;
    double dockInset = 0;
    std::vector<Scenario::Space> spaces;
    std::uint64_t currentSpace = 0;
};

/// The attached displays, the primary one first. Main thread.
class Screens {
public:
    explicit Screens(const std::vector<Scenario::Display>& displays);

    const std::vector<Screen>& all() const { return screens_; }

    void add(const Scenario::Display& display);
    void remove(std::size_t index);
    void setFrame(std::size_t index, const CGRect& frame);

    /// The index of the screen that most of a rectangle in window space lies on, else of the first one. There must be a
    /// screen.
    std::size_t containing(const CGRect& rect) const;
    /// Absent when no screen has the space.
    std::optional<std::size_t> withSpace(std::uint64_t space) const;
    bool isCurrent(std::uint64_t space) const;
    bool isFullScreen(std::uint64_t space) const;

    /// False when it was there already, or is on no screen.
    bool show(std::uint64_t space);
    std::uint64_t addFullScreen(std::size_t index, pid_t owner);
    /// Where it was current, `instead` is shown, or the screen's first space.
    void removeSpace(std::uint64_t space, std::uint64_t instead);

    /// Between screen space and window space; the same both ways.
    CGRect flipped(const CGRect& rect) const;

private:
    std::vector<Screen> screens_;
};

}
