#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSView.h"

#include <string>

class QLineEdit;

/// A key that is no text, by what it asks for.
enum class NSTextCommand { moveUp, moveDown, insertNewline, cancelOperation };

/// Who is told what happens in a text field. Main thread.
class NSTextFieldDelegate {
public:
    virtual ~NSTextFieldDelegate() = default;
    /// The field has got the keyboard.
    virtual void controlTextDidBeginEditing() = 0;
    /// The user changed the text.
    virtual void controlTextDidChange() = 0;
    /// The keyboard has gone elsewhere.
    virtual void controlTextDidEndEditing() = 0;
    /// True when the command was carried out; otherwise the field does with it what it does by itself.
    virtual bool doCommand(NSTextCommand command) = 0;
};

/// A line of text that is typed into, with the selection, clipboard, input method and editing keys of the desktop's own
/// text fields. It has no border, background or focus ring: those are drawn by the view it lies in. Main thread.
class NSTextField : public NSView {
public:
    explicit NSTextField(const CGRect& frame);
    ~NSTextField() override;

    /// Not owned.
    void setDelegate(NSTextFieldDelegate* delegate) { delegate_ = delegate; }
    void setFont(const NSFont& font);
    void setTextColor(const NSColor& color);
    void setPlaceholder(const std::string& text, const NSColor& color);
    const std::string& placeholder() const { return placeholder_; }
    const NSFont& font() const { return font_; }

    /// UTF-8.
    std::string stringValue() const;
    /// The delegate isn't told.
    void setStringValue(const std::string& text);

    /// Called when the user presses into the field. The base behaviour makes the window key and has the field get what
    /// is typed; false when the window won't have the keyboard.
    virtual bool becomeFirstResponder();

    void setFrame(const CGRect& frame) override;
    void rescale() override;

private:
    class Editing;

    NSFont font_ = NSFont::systemFont(13);
    std::string placeholder_;
    NSTextFieldDelegate* delegate_ = nullptr;
    /// Owned by the view's widget.
    QLineEdit* edit_;
    std::unique_ptr<Editing> editing_;
};
