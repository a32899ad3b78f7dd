#include "bar/BarElements.h"

#include "model/ItemCommands.h"

#include <algorithm>
#include <cctype>

namespace {

using BarElements::Actions;

std::string counted(const std::string& number, const char* thing)
{
    return number + ' ' + thing + (number == "1" ? "" : "s");
}

/// Most badges are numbers, but an application may show any text.
std::string badgeText(const std::string& badge)
{
    const bool isNumber = std::ranges::all_of(badge, [](unsigned char letter) { return std::isdigit(letter); });
    return isNumber ? counted(badge, "notification") : "badge " + badge;
}

/// What the picture of a button tells beside its name.
std::string help(const BarItem& item)
{
    std::string text;
    const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (item.windowCount > 0)
        add(counted(std::to_string(item.windowCount), "window"));
    if (item.badge && !item.badge->empty())
        add(badgeText(*item.badge));
    if (item.demandsAttention)
        add("wants attention");
    if (!item.isRunning())
        add("not running");
    else if (DockModel::isHidden(item))
        add("hidden");
    return text;
}

NSAccessibilityElement tile(BarComponent component, int hit, const BarLayout& layout, const Actions& actions)
{
    return {
        .identifier = std::string(rawValue(component)),
        .label = std::string(title(component)),
        .frame = layout.hitRect(hit),
        .press = actions(hit),
    };
}

/// The button of a window is told from those of the application's others.
NSAccessibilityElement button(const BarItem& item, int position, const BarLayout& layout, const Actions& actions)
{
    return {
        .identifier = "button " + DockModel::key(item) + (item.windowID ? ' ' + std::to_string(*item.windowID) : ""),
        .label = item.name,
        .help = help(item),
        .isSelected = item.isFrontmost,
        .frame = layout.hitRect(position),
        .press = actions(position),
    };
}

}

std::vector<NSAccessibilityElement> BarElements::of(const BarPicture& picture, const Actions& actions)
{
    const BarLayout& layout = picture.layout;
    std::vector<NSAccessibilityElement> elements;
    const auto add = [&](BarComponent component, int hit) -> NSAccessibilityElement& {
        return elements.emplace_back(tile(component, hit, layout, actions));
    };
    if (layout.shows(BarComponent::launcher))
        add(BarComponent::launcher, BarHit::launcher);
    if (layout.shows(BarComponent::search))
        add(BarComponent::search, BarHit::search);
    if (layout.shows(BarComponent::showDesktop))
        add(BarComponent::showDesktop, BarHit::showDesktop).isSelected = picture.isShowingDesktop;
    if (picture.finder) {
        NSAccessibilityElement& finder = add(BarComponent::finder, BarHit::finder);
        finder.help = help(*picture.finder);
        finder.isSelected = picture.finder->isFrontmost;
    }
    if (layout.shows(BarComponent::trash))
        add(BarComponent::trash, BarHit::trash).help = picture.isTrashEmpty ? "empty" : "";
    int position = 0;
    for (const BarItem& item : picture.buttons)
        elements.push_back(button(item, position++, layout, actions));
    std::ranges::stable_sort(elements, {}, [](const NSAccessibilityElement& element) { return element.frame.x; });
    return elements;
}
