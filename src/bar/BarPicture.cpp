#include "bar/BarPicture.h"

#include "controls/Trash.h"
#include "look/Appearance.h"
#include "model/Items.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"

#include <algorithm>
#include <iterator>

BarLook BarLook::current()
{
    return {
        .style = Settings::barStyle(),
        .edge = Settings::barEdge(),
        .tint = Appearance::tint(),
        .opacity = Settings::barOpacity(),
        .accent = Appearance::accent(),
        .floatingInset = Appearance::floatingInset(),
        .showsPips = Settings::showWindowPips(),
    };
}

BarPicture BarPicture::current(CGSize size, const std::vector<BarItem>& items)
{
    std::vector<BarItem> buttons = buttonsOf(items);
    const auto launcher = std::ranges::find_if(items, &BarItem::isLauncher);
    const auto layout = BarLayout::current(size, static_cast<int>(buttons.size()));
    return {
        .layout = layout,
        .look = BarLook::current(),
        .launcher = launcher != items.end() ? std::optional(*launcher) : std::nullopt,
        .finder = layout.shows(BarComponent::finder) ? DockModel::finderItem() : std::nullopt,
        .buttons = std::move(buttons),
        .hovered = std::nullopt,
        .drag = std::nullopt,
        .isShowingDesktop = ShowDesktop::isShowingDesktop(),
        .isTrashEmpty = !layout.shows(BarComponent::trash) || Trash::isEmpty(),
    };
}

std::vector<BarItem> BarPicture::buttonsOf(const std::vector<BarItem>& items)
{
    std::vector<BarItem> buttons;
    buttons.reserve(items.size());
    std::ranges::remove_copy_if(items, std::back_inserter(buttons), &BarItem::isLauncher);
    return buttons;
}
