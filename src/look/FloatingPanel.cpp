#include "look/FloatingPanel.h"

FloatingPanel::FloatingPanel(CGSize size, CGWindowLevelKey level)
    : NSPanel({ 0, 0, size.width, size.height })
{
    setOpaque(false);
    setBackgroundColor(NSColor::clear());
    setLevel(CGWindowLevelForKey(level) + 1);
}
