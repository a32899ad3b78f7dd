#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "bar/BarLayout.h"
#include "model/BarItem.h"
#include "settings/Choices.h"

#include <optional>
#include <vector>

/// How the user wants bars to look.
struct BarLook {
    BarStyle style;
    BarEdge edge;
    NSColor tint;
    double opacity;
    NSColor accent;
    /// 0 on a bar that doesn't float. Points.
    double floatingInset;
    bool showsPips;

    /// By the settings, as of now.
    static BarLook current();
};

/// The button that is being dragged.
struct BarDrag {
    /// Where it will land, as a position among the buttons.
    int landing = 0;
    /// The pointer, in the bar's coordinates.
    double pointX = 0;
    std::optional<NSImage> icon;
};

/// Everything that the picture of a bar depends on: painting it asks nobody.
struct BarPicture {
    /// What the settings and the system say now, of a bar that isn't touched.
    static BarPicture current(CGSize size, const std::vector<BarItem>& items);
    /// The items without the launcher's entry, in order.
    static std::vector<BarItem> buttonsOf(const std::vector<BarItem>& items);

    BarLayout layout;
    BarLook look;
    std::optional<BarItem> launcher;
    std::optional<BarItem> finder;
    /// From left to right.
    std::vector<BarItem> buttons;
    /// What the pointer is over: a `BarHit` value.
    std::optional<int> hovered;
    std::optional<BarDrag> drag;
    bool isSearchFocused = false;
    bool isShowingDesktop = false;
    bool isTrashEmpty = true;
};
