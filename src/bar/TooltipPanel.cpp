#include "bar/TooltipPanel.h"

#include "bar/PanelPlace.h"

namespace {

constexpr CGSize initialSize { 100, 24 };
constexpr double gap = 6;
constexpr double margin = 4;

}

TooltipPanel::TooltipPanel()
    : FloatingPanel(initialSize, kCGPopUpMenuWindowLevelKey)
    , label_(std::make_shared<TooltipView>(CGRect {}))
{
    setRole(NSPanelRole::tooltip);
    setIgnoresMouseEvents(true);
    setContentView(label_);
}

void TooltipPanel::show(const std::string& text, const CGRect& anchor)
{
    label_->setText(text, PanelPlace::room(anchor, margin));
    setFrame(PanelPlace::beside(anchor, label_->fittingSize(), gap, margin), true);
    orderFrontRegardless();
}
