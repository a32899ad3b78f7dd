#include "appkit/NSVisualEffectView.h"

#include "appkit/NSBezierPath.h"
#include "appkit/NSPanel.h"
#include "host/Desktop.h"
#include "host/Surfaces.h"

namespace {

host::Surfaces& surfaces()
{
    return host::Desktop::current().surfaces();
}

}

void NSVisualEffectView::setHidden(bool hidden)
{
    NSView::setHidden(hidden);
    if (hidden && window())
        surfaces().setBackdrop(*window()->widget(), {});
    setNeedsDisplay();
}

void NSVisualEffectView::draw(const CGRect&)
{
    if (isHidden() || !window())
        return;
    const bool blends = surfaces().canBlend();
    if (blends)
        surfaces().setBackdrop(*window()->widget(), frame());
    NSColor::colorWithCalibratedWhite(0.16, blends ? 0.45 : 1.0).set();
    NSRectFillUsingOperation(bounds(), NSCompositingOperation::sourceOver);
}
