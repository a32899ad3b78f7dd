#pragma once

#include "bar/PreviewView.h"
#include "look/FloatingPanel.h"

#include <memory>
#include <string>
#include <vector>

/// The previews of an application's windows over its button. It goes by itself when a window is picked. Rectangles and
/// points are in screen space. Main thread.
class PreviewPanel final : public FloatingPanel {
public:
    PreviewPanel();
    ~PreviewPanel() override;

    /// Without windows it hides. `anchor` is the button.
    void show(std::vector<WindowEntry> windows, const std::string& appName, const CGRect& anchor);
    void hide();
    bool isShowing() const { return isVisible(); }

    /// Where the pointer may be without the panel closing: the button, the panel, and what is between them.
    CGRect hitZone() const { return hitZone(anchorRect_, frame()); }
    static CGRect hitZone(const CGRect& anchor, const CGRect& panel) { return CGRectUnion(anchor, panel); }
    void pointerMoved(CGPoint toScreenPoint);
    void resizeToFit();

    const std::shared_ptr<PreviewView>& content() const { return content_; }

private:
    void pick(const WindowEntry& window);

    std::shared_ptr<PreviewView> content_;
    CGRect anchorRect_;
};
