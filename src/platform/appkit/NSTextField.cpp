#include "appkit/NSTextField.h"

#include <QWidget>

NSTextField::NSTextField(const CGRect& frame)
    : NSView(frame)
{
    widget()->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void NSTextField::setFont(const NSFont& font)
{
    font_ = font;
    setNeedsDisplay();
}

void NSTextField::setPlaceholder(const std::string& text, const NSColor& color)
{
    placeholder_ = text;
    placeholderColor_ = color;
    setNeedsDisplay();
}

void NSTextField::draw(const CGRect&)
{
    drawAtPoint(placeholder_, { 0, (bounds().height - sizeWithAttributes(placeholder_, font_).height) / 2 }, font_,
        placeholderColor_);
}
