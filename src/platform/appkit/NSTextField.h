#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSView.h"

#include <string>

/// A line of text. It can't be edited yet: it shows its placeholder and lets the pointer through to the view it lies
/// in.
class NSTextField : public NSView {
public:
    explicit NSTextField(const CGRect& frame);

    void setFont(const NSFont& font);
    void setPlaceholder(const std::string& text, const NSColor& color);
    const std::string& placeholder() const { return placeholder_; }
    const NSFont& font() const { return font_; }

    void draw(const CGRect& dirty) override;

private:
    NSFont font_ = NSFont::systemFont(13);
    NSColor placeholderColor_ = NSColor::black();
    std::string placeholder_;
};
