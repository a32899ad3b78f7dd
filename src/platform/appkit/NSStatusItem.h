#pragma once

#include "appkit/NSImage.h"
#include "base/CGGeometry.h"

#include <memory>
#include <optional>
#include <string>

class NSMenu;
namespace host {
class StatusItem;
}

/// As wide as what it shows.
inline constexpr double NSVariableStatusItemLength = -1;

/// A picture with a menu, at the end of the menu bar or in a panel's tray. Main thread.
class NSStatusItem {
public:
    ~NSStatusItem();
    NSStatusItem(const NSStatusItem&) = delete;
    NSStatusItem& operator=(const NSStatusItem&) = delete;

    const std::optional<NSImage>& image() const { return image_; }
    /// A symbol is a template: it is drawn in the colour of what stands beside it.
    void setImage(std::optional<NSImage> image);
    const std::shared_ptr<const NSMenu>& menu() const { return menu_; }
    /// A menu of it that is open stays so, as it was.
    void setMenu(std::shared_ptr<const NSMenu> menu);
    /// The item's name where its place among others is remembered. Trays remember it by the program.
    const std::string& autosaveName() const { return autosaveName_; }
    void setAutosaveName(std::string name) { autosaveName_ = std::move(name); }

    /// Screen space; absent while it has no place, or where that can't be known.
    std::optional<CGRect> buttonFrame() const;

private:
    friend class NSStatusBar;
    explicit NSStatusItem(std::unique_ptr<host::StatusItem> item);
    void update();

    /// Null where it shows nowhere.
    std::unique_ptr<host::StatusItem> item_;
    std::optional<NSImage> image_;
    std::shared_ptr<const NSMenu> menu_;
    std::string autosaveName_;
};

/// Where status items stand. Main thread.
class NSStatusBar {
public:
    static NSStatusBar& systemStatusBar();

    /// `length` is `NSVariableStatusItemLength`. It stands there until it is removed.
    std::shared_ptr<NSStatusItem> statusItem(double length);
    void removeStatusItem(const std::shared_ptr<NSStatusItem>& item);
};
