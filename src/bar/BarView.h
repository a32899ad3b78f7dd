#pragma once

#include "appkit/NSView.h"
#include "bar/BarPicture.h"
#include "bar/BarSearchField.h"
#include "foundation/NSTimer.h"
#include "search/SearchResultsPanel.h"

#include <memory>
#include <optional>
#include <vector>

class PreviewPanel;
class TooltipPanel;

/// A whole bar in one view: it paints the bar, and does what the pointer asks. Coordinates are the view's own, origin
/// at the lower left corner, whichever edge of the screen the bar is on. Geometry is worked out afresh at each call
/// from the bounds, the settings and the items. Main thread.
class BarView final : public NSView, private NSTextFieldDelegate {
public:
    explicit BarView(const CGRect& frame);
    ~BarView() override;

    /// Everything the bar shows, the launcher's entry included.
    const std::vector<BarItem>& items() const { return items_; }
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
    std::vector<BarItem> appItems() const;
    std::optional<BarItem> launcherItem() const;
    /// The application items as they stand on the bar: during a drag the dragged one is at the place where it would
    /// land.
    std::vector<BarItem> displayItems() const { return displayItems(layout(), drag()); }
    std::vector<LayoutItem> layoutItems() const { return layoutItems(drag()); }
    /// How many buttons fit; at least 1.
    int buttonCapacity() const { return layout().buttonCapacity(); }
    /// Which of the places 0 to `count` the dragged button lands at.
    int insertionIndex(int count) const;
    /// How many buttons the bar would show while the one at position `from` was dragged to `pointX`.
    int layoutCountDuringDrag(int from, double pointX) const;
    CGRect searchFieldRect() const { return layout().searchFieldRect(); }

    void applySearchFieldStyle();
    /// Fits everything to the settings as of now, and repaints.
    void relayout();
    void resizeSubviews(CGSize oldSize) override;

    // Drawing.

    void draw(const CGRect& dirty) override;

    // Pointer.

    /// What the pointer is over: a `BarHit` value.
    std::optional<int> hoveredIndex() const { return hoveredIndex_; }
    void updateHover(CGPoint point);
    /// The pointer is over the bar's window, of that frame in screen space.
    void applyCursor(CGPoint forScreenPoint, const CGRect& windowFrame);
    /// The pointer is outside of the bar's window, in screen space. On its way to the preview it is still with us.
    void pointerLeftBar(CGPoint at);
    /// Drops the tooltip and the preview, those that show and those to come.
    void cancelTooltip();
    const TooltipPanel& tooltip() const { return *tooltip_; }
    const PreviewPanel& preview() const { return *preview_; }

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

    // Search.

    /// Shows what the text in the search box finds, as of now.
    void updateResults();
    /// Empties the search box and gives the keyboard back.
    void endSearch();
    const std::shared_ptr<BarSearchField>& searchField() const { return searchField_; }
    const SearchResultsPanel& resultsPanel() const { return *resultsPanel_; }

    /// Takes down what the bar has opened: it is about to go, or to hide.
    void closePanels();

private:
    /// An application button on the move.
    struct Drag {
        /// Its position in `appItems`; beyond their end when they have become fewer since.
        int origin;
        double pointX;
    };

    BarLayout layout() const;
    BarPicture picture() const;
    std::vector<BarItem> displayItems(const BarLayout& bar, const std::optional<Drag>& drag) const;
    std::vector<LayoutItem> layoutItems(const std::optional<Drag>& drag) const;
    std::optional<BarDrag> dragPicture(const BarLayout& bar) const;

    std::optional<Drag> drag() const;
    bool isDragging() const { return drag().has_value(); }
    void endPress();
    void commitDrag();
    void click(CGPoint point);
    void clickShowDesktop();
    void clickLauncher();

    void setCursor(CGPoint point) const;
    void mouseLeftBar();
    void setHoveredIndex(std::optional<int> index);
    void scheduleTooltip();
    void showTooltip();
    void showComponentTooltip();

    void setUpSearchField();
    void setSearchFocused(bool focused);
    void controlTextDidBeginEditing() override;
    void controlTextDidChange() override;
    void controlTextDidEndEditing() override;
    bool doCommand(NSTextCommand command) override;

    std::vector<BarItem> items_;
    std::shared_ptr<BarSearchField> searchField_;
    std::unique_ptr<SearchResultsPanel> resultsPanel_;
    bool isSearchFocused_ = false;
    std::optional<int> hoveredIndex_;
    std::unique_ptr<TooltipPanel> tooltip_;
    std::unique_ptr<PreviewPanel> preview_;
    std::shared_ptr<NSTimer> tooltipTimer_;
    /// Where the button of the mouse went down; absent while it is up.
    std::optional<CGPoint> dragStartPoint_;
    /// The position of the application button that was pressed.
    std::optional<int> dragOriginIndex_;
    /// The pointer during a drag; absent while nothing is dragged.
    std::optional<double> dragPointX_;
};
