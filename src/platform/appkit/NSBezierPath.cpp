#include "appkit/NSBezierPath.h"

#include "appkit/NSGraphicsContext.h"

void NSBezierPath::fill() const
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->fill(*this, context->color, NSCompositingOperation::sourceOver);
}

void NSBezierPath::stroke() const
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->stroke(*this, context->color);
}

void NSGradient::drawInBezierPath(const NSBezierPath& path, double angle) const
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->fillGradient(path, start_, end_, angle);
}

void NSRectFillUsingOperation(const CGRect& rect, NSCompositingOperation operation)
{
    if (NSGraphicsContext* context = NSGraphicsContext::current())
        context->fill(NSBezierPath::rect(rect), context->color, operation);
}
