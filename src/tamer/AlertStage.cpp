#include "tamer/AlertStage.h"

#include "foundation/NSProcessInfo.h"
#include "log/Log.h"
#include "system/Attribute.h"
#include "system/Dictionaries.h"
#include "system/Displays.h"
#include "system/ListedWindow.h"
#include "system/WindowElement.h"
#include "tamer/Placement.h"
#include "tamer/TargetGeometry.h"
#include "windowserver/CGWindow.h"

namespace {

constexpr std::int64_t lowestLayer = 1;
constexpr std::int64_t highestLayer = 10;
constexpr double leastWidth = 120;
constexpr double leastHeight = 40;

struct Alert {
    Placement::WindowName name;
    CGRect bounds;
};

/// Absent when the entry tells too little or is of no alert. The tests stand in the order of their cost.
std::optional<Alert> alertIn(const Value& entry)
{
    const auto window = ListedWindow::read(entry);
    if (!window || window->layer < lowestLayer || window->layer > highestLayer
        || window->pid == NSProcessInfo::processIdentifier())
        return std::nullopt;
    const Value* dictionary = entry.find(kCGWindowBounds);
    const auto bounds = dictionary ? CGRectMakeWithDictionaryRepresentation(*dictionary) : std::nullopt;
    if (!bounds || bounds->width < leastWidth || bounds->height < leastHeight)
        return std::nullopt;
    return Alert { { window->pid, window->number }, *bounds };
}

std::string ownerName(const Value& entry)
{
    const Value* name = entry.find(kCGWindowOwnerName);
    const std::string* text = name ? name->string() : nullptr;
    return text ? *text : "?";
}

void move(const Placement::WindowName& name, const CGRect& rect, bool resize)
{
    const AXUIElement application = Attribute::application(name.pid, Placement::messagingTimeout);
    const auto windows = Attribute::elements(application, "AXWindows");
    if (!windows)
        return;
    const auto window = WindowElement::find(*windows, name.number);
    if (!window)
        return;
    if (resize)
        Placement::setFrame(*window, rect);
    else
        Placement::setPosition(*window, rect.origin());
}

void lift(const Alert& alert, const CGRect& cleared, const std::string& owner)
{
    using Placement::whole;
    const bool isLower = cleared.height < alert.bounds.height;
    std::string heightNote;
    if (isLower)
        heightNote
            = ", height " + std::to_string(whole(alert.bounds.height)) + " -> " + std::to_string(whole(cleared.height));
    Log::debug("tamer: lifting ", owner, " alert ", alert.name.number, " off the bar (", whole(alert.bounds.maxY()),
        " -> ", whole(cleared.maxY()), ")", heightNote);
    move(alert.name, cleared, isLower);
    Placement::remember(alert.name, cleared);
}

/// The rows of the screen with the keyboard focus, against whose bar every alert is held. An alert that is on a screen
/// wholly above or below would be taken across to this one, so it isn't held against it.
class MainScreen {
public:
    MainScreen()
        : screens_(NSScreen::screens())
        , main_(NSScreen::mainScreen())
    {
    }

    bool sharesRowsWith(const CGRect& bounds) const
    {
        if (screens_.size() < 2 || !main_)
            return true;
        const auto own = Displays::screenContaining(bounds, screens_);
        return !own || (own->frame().minY() < main_->frame().maxY() && main_->frame().minY() < own->frame().maxY());
    }

private:
    std::vector<NSScreen> screens_;
    std::optional<NSScreen> main_;
};

}

void AlertStage::run()
{
    const auto target = WindowTamer::targetRect();
    if (!target)
        return;
    const auto list
        = CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, 0);
    const MainScreen main;
    for (const Value& entry : dictionaries(list)) {
        const auto alert = alertIn(entry);
        const auto cleared = alert ? WindowTamer::clearedFrame(alert->bounds, *target) : std::nullopt;
        if (!cleared || !main.sharesRowsWith(alert->bounds))
            continue;
        // A program that didn't follow isn't asked again for the same place.
        const auto before = Placement::placed(alert->name);
        if (!before || !Placement::isSamePlace(*before, *cleared))
            lift(*alert, *cleared, ownerName(entry));
    }
}
