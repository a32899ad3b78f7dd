#pragma once

#include "appkit/NSImage.h"
#include "base/CGGeometry.h"

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class NSMenu;
class NSView;
struct NSEvent;

using NSEventModifierFlags = std::uint64_t;
inline constexpr NSEventModifierFlags NSEventModifierFlagOption = 1 << 19;
inline constexpr NSEventModifierFlags NSEventModifierFlagCommand = 1 << 20;

/// One entry of a menu. Main thread.
class NSMenuItem {
public:
    using Action = std::function<void(const NSMenuItem& sender)>;

    /// An entry with neither action nor submenu can't be chosen. `keyEquivalent` is the character that chooses it
    /// together with its modifiers while the menu is open; empty for none.
    NSMenuItem(std::string title, Action action, std::string keyEquivalent);
    static NSMenuItem separatorItem();

    const std::string& title() const { return title_; }
    const std::string& keyEquivalent() const { return keyEquivalent_; }
    /// What is held down with it: Command, and Option where it is named.
    NSEventModifierFlags keyEquivalentModifierMask() const { return modifiers_; }
    void setKeyEquivalentModifierMask(NSEventModifierFlags modifiers) { modifiers_ = modifiers; }
    bool isSeparatorItem() const { return isSeparator_; }
    bool isEnabled() const { return isEnabled_ && (action_ || submenu_); }
    void setEnabled(bool enabled) { isEnabled_ = enabled; }
    /// Shown while the pointer rests on the entry; empty for none.
    const std::string& toolTip() const { return toolTip_; }
    void setToolTip(std::string text) { toolTip_ = std::move(text); }
    /// Whether it has a tick.
    bool state() const { return state_; }
    void setState(bool on) { state_ = on; }
    /// Shown at its own size.
    const std::optional<NSImage>& image() const { return image_; }
    void setImage(NSImage image) { image_ = std::move(image); }
    const std::shared_ptr<NSMenu>& submenu() const { return submenu_; }
    void setSubmenu(std::shared_ptr<NSMenu> submenu) { submenu_ = std::move(submenu); }
    /// What the entry is about, for its action.
    const std::any& representedObject() const { return representedObject_; }
    void setRepresentedObject(std::any object) { representedObject_ = std::move(object); }

    /// Does what choosing it does; nothing when it can't be chosen.
    void perform() const;

private:
    std::string title_;
    Action action_;
    std::string keyEquivalent_;
    NSEventModifierFlags modifiers_ = NSEventModifierFlagCommand;
    std::string toolTip_;
    bool isSeparator_ = false;
    bool isEnabled_ = true;
    bool state_ = false;
    std::optional<NSImage> image_;
    std::shared_ptr<NSMenu> submenu_;
    std::any representedObject_;
};

/// A menu: a list of entries, and the means to show it. Main thread.
class NSMenu {
public:
    /// Valid until another entry is added.
    NSMenuItem& addItem(NSMenuItem item);
    NSMenuItem& addItem(std::string title, NSMenuItem::Action action = {}, std::string keyEquivalent = {});

    const std::vector<NSMenuItem>& itemArray() const { return items_; }
    /// Chooses an entry without the menu being shown.
    void performActionForItem(std::size_t index) const { items_.at(index).perform(); }

    /// Opens the menu with its upper left corner at a point of the view, or as near as the screen has room for: above
    /// the point, where that is at the screen's lower edge. Returns at once. The menu closes on a choice, Escape, a
    /// press elsewhere, and when the view's window goes; a choice is performed after it has closed.
    static void popUpMenuPositioningItem(
        const std::shared_ptr<const NSMenu>& menu, const NSMenuItem* item, CGPoint location, const NSView& view);
    /// The same at the place of a mouse event.
    static void popUpContextMenu(const std::shared_ptr<const NSMenu>& menu, const NSEvent& event, const NSView& view);

    /// The menu that is open now; null when none is.
    static std::shared_ptr<const NSMenu> open();
    /// Closes the menu that is open, without a choice.
    static void cancelTracking();

private:
    std::vector<NSMenuItem> items_;
};
