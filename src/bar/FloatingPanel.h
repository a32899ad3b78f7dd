#pragma once

#include "appkit/NSPanel.h"

/// A small panel in front of the bar that never gets the keyboard.
class FloatingPanel : public NSPanel {
public:
    explicit FloatingPanel(CGSize size);

    bool canBecomeKey() const override { return false; }
};
