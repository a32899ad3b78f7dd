#pragma once

#include "forms/Form.h"

#include <QWidget>

/// The toolkit's widget of one control.
class ControlWidget : public QWidget {
public:
    /// Never null.
    static ControlWidget* make(const forms::Control& control);

    /// Shows the control as it is now; false, and nothing happens, when it is of another kind.
    virtual bool show(const forms::Control& control) = 0;
    /// What it does, for those who can't see what stands below it.
    void setHelp(const QString& help);
    /// What takes the keyboard; null in a control that only tells something.
    QWidget* editor() const { return editor_; }
    /// Whether it takes the room that its neighbours leave.
    bool isWide() const { return isWide_; }

protected:
    QWidget* editor_ = nullptr;
    bool isWide_ = false;
};
