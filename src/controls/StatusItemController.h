#pragma once

#include "foundation/NSNotificationCenter.h"

#include <functional>
#include <memory>

class NSMenu;
class NSStatusItem;

/// The icon in the menu bar: a way to get a hidden bar back, and the one way to quit that can always be seen. It is
/// there as long as the setting says so. Main thread.
class StatusItemController {
public:
    explicit StatusItemController(std::function<void()> onToggleBar);
    ~StatusItemController();
    StatusItemController(const StatusItemController&) = delete;
    StatusItemController& operator=(const StatusItemController&) = delete;

    /// Null while the icon isn't shown.
    const std::shared_ptr<NSStatusItem>& statusItem() const { return statusItem_; }

private:
    void refresh();
    void show();
    void hide();
    std::shared_ptr<NSMenu> buildMenu();
    void toggleBar();
    static void hideIcon();

    std::function<void()> onToggleBar_;
    std::shared_ptr<NSStatusItem> statusItem_;
    /// Menus may be chosen from after this has gone.
    std::shared_ptr<StatusItemController*> self_ = std::make_shared<StatusItemController*>(this);
    NSNotificationCenter::Token observer_;
};
