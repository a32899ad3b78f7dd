#pragma once

#include "appkit/NSPanel.h"

/// The panel that a bar lies in. It takes the keyboard only while somebody raises `wantsKey`.
class BarWindow final : public NSPanel {
public:
    using NSPanel::NSPanel;

    bool canBecomeKey() const override { return wantsKey; }

    bool wantsKey = false;
};
