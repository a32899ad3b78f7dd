#include "appkit/NSTextField.h"

#include "appkit/Colors.h"
#include "appkit/Fonts.h"
#include "appkit/NSPanel.h"
#include "base/RunLoop.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include <optional>

namespace {

/// What the toolkit keeps free of text inside a line edit, in pixels to each side.
constexpr int lineEditMargin = 2;

void setColor(QWidget& widget, QPalette::ColorRole role, const QColor& color)
{
    QPalette palette = widget.palette();
    palette.setColor(role, color);
    widget.setPalette(palette);
}

std::optional<NSTextCommand> commandOf(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return NSTextCommand::moveUp;
    case Qt::Key_Down:
        return NSTextCommand::moveDown;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return NSTextCommand::insertNewline;
    case Qt::Key_Escape:
        return NSTextCommand::cancelOperation;
    default:
        return std::nullopt;
    }
}

}

/// Carries the line edit's events over.
class NSTextField::Editing final : public QObject {
public:
    Editing(NSTextField& field, QLineEdit& edit)
        : field_(field)
    {
        edit.installEventFilter(this);
        connect(&edit, &QLineEdit::textEdited, this, [this] {
            const auto held = field_.hold();
            const RunLoop::Turn turn;
            if (field_.delegate_)
                field_.delegate_->controlTextDidChange();
        });
    }

private:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto held = field_.hold();
        const RunLoop::Turn turn;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            // Also where the toolkit takes it to have the keyboard: it learns late that the keyboard has gone.
            field_.becomeFirstResponder();
            return false;
        case QEvent::KeyPress:
            return hasCarriedOut(static_cast<const QKeyEvent&>(*event));
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            tellOfFocus(static_cast<const QFocusEvent&>(*event));
            return false;
        default:
            return false;
        }
    }

    bool hasCarriedOut(const QKeyEvent& event) const
    {
        const auto command = commandOf(event.key());
        return command && field_.delegate_ && field_.delegate_->doCommand(*command);
    }

    /// The field's own menu takes the keyboard for a while only.
    void tellOfFocus(const QFocusEvent& event) const
    {
        if (!field_.delegate_ || event.reason() == Qt::PopupFocusReason)
            return;
        if (event.gotFocus())
            field_.delegate_->controlTextDidBeginEditing();
        else
            field_.delegate_->controlTextDidEndEditing();
    }

    NSTextField& field_;
};

NSTextField::NSTextField(const CGRect& frame)
    : NSView(frame)
    , edit_(new QLineEdit(widget()))
    , editing_(std::make_unique<Editing>(*this, *edit_))
{
    edit_->setFrame(false);
    // A drop would put text in without a press, and so without the keyboard.
    edit_->setAcceptDrops(false);
    edit_->setFocusPolicy(Qt::ClickFocus);
    setColor(*edit_, QPalette::Base, Qt::transparent);
    setFrame(frame);
}

/// The line edit may outlive the field.
NSTextField::~NSTextField() = default;

void NSTextField::setFrame(const CGRect& frame)
{
    NSView::setFrame(frame);
    edit_->setGeometry(widget()->rect().adjusted(-lineEditMargin, 0, lineEditMargin, 0));
}

void NSTextField::setFont(const NSFont& font)
{
    font_ = font;
    edit_->setFont(toolkitFont(font));
}

void NSTextField::rescale()
{
    NSView::rescale();
    setFrame(frame());
    setFont(font_);
}

void NSTextField::setTextColor(const NSColor& color)
{
    setColor(*edit_, QPalette::Text, toolkitColor(color));
}

void NSTextField::setPlaceholder(const std::string& text, const NSColor& color)
{
    placeholder_ = text;
    edit_->setPlaceholderText(QString::fromStdString(text));
    // What stands in it when it is empty is all that says what it is for.
    edit_->setAccessibleName(QString::fromStdString(text));
    setColor(*edit_, QPalette::PlaceholderText, toolkitColor(color));
}

std::string NSTextField::stringValue() const
{
    return edit_->text().toStdString();
}

void NSTextField::setStringValue(const std::string& text)
{
    edit_->setText(QString::fromStdString(text));
}

bool NSTextField::becomeFirstResponder()
{
    if (!window() || !window()->makeKey())
        return false;
    edit_->setFocus(Qt::MouseFocusReason);
    return true;
}
