#include "bar/FloatingPanel.h"

#include "windowserver/CGWindowLevel.h"

FloatingPanel::FloatingPanel(CGSize size)
    : NSPanel({ 0, 0, size.width, size.height }, NSWindowStyleMaskNonactivatingPanel, NSBackingStoreBuffered, false)
{
    setOpaque(false);
    setBackgroundColor(NSColor::clear());
    setHasShadow(true);
    setLevel(CGWindowLevelForKey(kCGPopUpMenuWindowLevelKey) + 1);
    setCollectionBehavior(NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary
        | NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenAuxiliary);
}
