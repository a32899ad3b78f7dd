#pragma once

#include "appkit/NSView.h"
#include "system/WindowIndex.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A row of cards, one a window: its picture and its title. Flipped: origin at the upper left corner, y down. It
/// learns of the pointer by itself; who knows of it from elsewhere says so through `hover`. Main thread.
class PreviewView final : public NSView {
public:
    using NSView::NSView;

    static constexpr double height = 150;

    /// `appName` stands under a window that has no title.
    void setWindows(std::vector<WindowEntry> entries, std::string appName);
    const std::vector<WindowEntry>& entries() const { return entries_; }
    CGSize fittingSize() const;

    /// How many cards have room side by side in a panel of that width; at least one.
    static std::size_t capacity(double width);
    static CGRect cardRect(int index);
    /// Which of `count` cards lies there.
    static std::optional<int> card(CGPoint point, int count);
    std::optional<int> hoveredCard() const { return hoveredCard_; }
    /// The pointer is there, in the view's coordinates, which may be outside.
    void hover(CGPoint point);

    /// Whether the pointer is known to be over the view, by the view's own tracking.
    bool holdsPointer() const { return holdsPointer_; }

    /// The pointer has left the view.
    std::function<void()> onExit;
    /// A card was clicked.
    std::function<void(const WindowEntry&)> onPick;

    bool isFlipped() const override { return true; }
    bool acceptsFirstMouse() const override { return true; }
    void updateTrackingAreas() override;
    void mouseMoved(const NSEvent& event) override;
    void mouseExited(const NSEvent& event) override;
    void mouseDown(const NSEvent& event) override;
    void mouseUp(const NSEvent& event) override;
    void draw(const CGRect& dirty) override;
    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::list; }
    std::vector<NSAccessibilityElement> accessibilityChildren() override;

private:
    void pick(const WindowEntry& entry);
    /// What stands under its picture.
    const std::string& label(const WindowEntry& entry) const { return entry.title.empty() ? appName_ : entry.title; }
    std::optional<int> cardAt(CGPoint point) const;
    void setHoveredCard(std::optional<int> card);
    void drawCard(const WindowEntry& entry, const CGRect& card, bool isHovered);
    void drawThumbnail(const WindowEntry& entry, const CGRect& box);
    void drawLabel(const WindowEntry& entry, const CGRect& card, double y) const;

    std::vector<WindowEntry> entries_;
    std::string appName_;
    bool holdsPointer_ = false;
    std::optional<int> hoveredCard_;
    /// Where the button of the mouse went down.
    std::optional<int> pressedCard_;
};
