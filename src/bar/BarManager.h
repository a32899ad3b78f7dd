#pragma once

#include "bar/BarController.h"
#include "model/BarItem.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

/// Keeps one bar on each display. Main thread.
class BarManager final : public std::enable_shared_from_this<BarManager> {
public:
    /// Makes the bars, and follows the displays for the life of the manager.
    void start();
    /// Makes the set of bars equal to the set of displays, and every bar current.
    void reconcile();

    /// The items of the bar on the screen with the keyboard focus, or else of another bar.
    std::vector<BarItem> primaryItems() const;

    const std::map<std::uint32_t, std::shared_ptr<BarController>>& controllers() const { return controllers_; }

private:
    void dropBarsWithoutDisplay(const std::vector<DisplayInfo>& displays);

    /// By the identifier of their display.
    std::map<std::uint32_t, std::shared_ptr<BarController>> controllers_;
};
