#pragma once

#include "appkit/NSView.h"
#include "bar/BarDrop.h"
#include "bar/BarHover.h"
#include "bar/BarPicture.h"
#include "bar/BarPress.h"
#include "bar/BarSearch.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// A whole bar in one view: it paints the bar, and does what the pointer asks. Coordinates are the view's own, origin
/// at the lower left corner, whichever edge of the screen the bar is on. What it shows, and where, is gathered by
/// `setItems` and `relayout`; what is hit is what is painted. Main thread.
class BarView final : public NSView {
public:
    explicit BarView(const CGRect& frame);

    /// Everything the bar shows, the launcher's entry included.
    const std::vector<BarItem>& items() const { return items_; }
    /// Brings the system's part of the picture up to date too.
    void setItems(std::vector<BarItem> items);

    // Layout.

    /// An application button where it stands; `index` is its position among the buttons.
    struct LayoutItem {
        int index;
        BarItem item;
        CGRect rect;
    };

    /// The zero rectangle for a hidden component.
    CGRect rect(BarComponent component) const { return layout().rect(component); }
    /// The items without the launcher's entry, in order.
    std::vector<BarItem> appItems() const { return BarPicture::buttonsOf(items_); }
    const std::optional<BarItem>& launcherItem() const { return picture_.launcher; }
    /// The application items as they stand on the bar: during a drag the dragged one is at the place where it would
    /// land.
    const std::vector<BarItem>& displayItems() const { return picture_.buttons; }
    std::vector<LayoutItem> layoutItems() const;
    /// How many buttons fit; at least 1.
    int buttonCapacity() const { return layout().buttonCapacity(); }
    /// Which of the places 0 to `count` the dragged button lands at.
    int insertionIndex(int count) const;
    /// How many buttons the bar would show while the one at position `from` was dragged to `pointX`.
    int layoutCountDuringDrag(int from, double pointX) const;
    CGRect searchFieldRect() const { return layout().searchFieldRect(); }

    void applySearchFieldStyle() { search_.fit(layout()); }
    /// Fits everything to the settings as of now, what is open included, and repaints.
    void relayout();
    void resizeSubviews(CGSize oldSize) override;

    // What it shows, as drawn and as told.

    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::toolbar; }
    std::vector<NSAccessibilityElement> accessibilityChildren() override;
    void draw(const CGRect& dirty) override;

    // Pointer.

    /// What the pointer is over: a `BarHit` value.
    std::optional<int> hoveredIndex() const { return hover_.hit(); }
    void updateHover(CGPoint point) { hover_.setHit(layout().hit(point)); }
    /// The pointer is over the bar's window, of that frame in screen space.
    void applyCursor(CGPoint forScreenPoint, const CGRect& windowFrame);
    /// The pointer is outside of the bar's window, in screen space where that is known.
    void pointerLeftBar(std::optional<CGPoint> at) { hover_.pointerLeft(at); }
    /// Drops the tooltip and the preview, those that show and those to come.
    void cancelTooltip() { hover_.cancelPanels(); }
    /// The bar moves away under the pointer: what it did with it is over.
    void letGoOfPointer();
    const TooltipPanel& tooltip() const { return hover_.tooltip(); }
    const PreviewPanel& preview() const { return hover_.preview(); }

    bool acceptsFirstMouse() const override { return true; }
    void resetCursorRects() override;
    void cursorUpdate(const NSEvent& event) override;
    void updateTrackingAreas() override;
    void mouseMoved(const NSEvent& event) override;
    void mouseExited(const NSEvent& event) override;
    void mouseDown(const NSEvent& event) override;
    void mouseDragged(const NSEvent& event) override;
    void mouseUp(const NSEvent& event) override;
    void rightMouseUp(const NSEvent& event) override;
    void otherMouseUp(const NSEvent& event) override;
    NSDragOperation draggingEntered(const NSDraggingInfo& dragged) override { return draggingUpdated(dragged); }
    NSDragOperation draggingUpdated(const NSDraggingInfo& dragged) override;
    void draggingExited() override { drop_.leave(); }
    bool performDragOperation(const NSDraggingInfo& dragged) override;

    // Search.

    /// Shows what the text in the search box finds, as of now.
    void updateResults() { search_.update(); }
    /// Empties the search box and gives the keyboard back.
    void endSearch() { search_.end(); }
    const std::shared_ptr<BarSearchField>& searchField() const { return search_.field(); }
    const SearchResultsPanel& resultsPanel() const { return search_.results(); }

    /// Takes down what the bar has opened: it is about to go, or to hide.
    void closePanels();

private:
    const BarLayout& layout() const { return picture_.layout; }
    void gather();
    void showState();
    void showDrag();
    std::optional<BarDrag> drag() const;
    std::vector<BarItem> arranged(const std::optional<BarPress>& press) const;

    void endPress();
    void commitDrag();
    void click(CGPoint point);
    std::function<void()> action(int hit);
    void clickShowDesktop();
    void clickLauncher();
    bool isText(CGPoint point) const;
    void setCursor(CGPoint point) const;

    std::vector<BarItem> items_;
    BarPicture picture_;
    std::optional<BarPress> press_;
    BarSearch search_;
    BarHover hover_;
    BarDrop drop_ { picture_ };
};
