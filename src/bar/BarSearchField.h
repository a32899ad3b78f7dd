#pragma once

#include "appkit/NSTextField.h"

/// The text field in the search box. The press that starts a search makes the bar willing to take the keyboard.
class BarSearchField final : public NSTextField {
public:
    using NSTextField::NSTextField;

    bool becomeFirstResponder() override;
};
