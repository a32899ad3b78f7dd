#include "bar/BarLayout.h"

#include "appkit/NSFont.h"
#include "settings/Settings.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

// In the order in which they are tried. A hidden component's zero rectangle holds no point.
constexpr std::pair<BarComponent, int> hitOrder[] = {
    { BarComponent::launcher, BarHit::launcher },
    { BarComponent::showDesktop, BarHit::showDesktop },
    { BarComponent::finder, BarHit::finder },
    { BarComponent::trash, BarHit::trash },
    { BarComponent::search, BarHit::search },
};

}

BarLayout::BarLayout(CGSize size, const Metrics& metrics, const std::vector<BarComponent>& components, int buttonCount)
    : size_(size)
    , metrics_(metrics)
    , buttonCount_(buttonCount)
    , rects_ {}
{
    const double padding = metrics_.edgePadding();
    const double areaWidth = appsWidth(components);
    double x = padding;
    for (const BarComponent component : components) {
        const bool isSearch = component == BarComponent::search;
        const double height = isSearch ? metrics_.searchHeight() : size_.height;
        const double componentWidth = isFlexible(component) ? areaWidth : width(component);
        rects_[static_cast<std::size_t>(component)] = { x, (size_.height - height) * 0.5, componentWidth, height };
        x += componentWidth + padding;
    }
}

BarLayout BarLayout::current(CGSize size, int buttonCount)
{
    std::vector<BarComponent> components = Settings::componentOrder();
    std::erase_if(components, [](BarComponent component) { return !Settings::isVisible(component); });
    return BarLayout(size, Metrics::current(), components, buttonCount);
}

double BarLayout::width(BarComponent component) const
{
    switch (component) {
    case BarComponent::search:
        return metrics_.searchWidth();
    case BarComponent::trash:
        return metrics_.trashWidth();
    default:
        return metrics_.itemWidth();
    }
}

double BarLayout::appsWidth(const std::vector<BarComponent>& components) const
{
    const double padding = metrics_.edgePadding();
    double available = size_.width - 2 * padding;
    for (const BarComponent component : components)
        if (!isFlexible(component))
            available -= width(component) + padding;

    const double content = buttonCount_ * metrics_.itemWidth();
    return std::max(metrics_.itemWidth(), std::min(content, available));
}

CGRect BarLayout::buttonRect(int position) const
{
    const double cell = metrics_.itemWidth();
    return { rect(BarComponent::apps).minX() + position * cell, 0, cell, size_.height };
}

int BarLayout::buttonCapacity() const
{
    const double trash = shows(BarComponent::trash) ? metrics_.trashWidth() : 0;
    const double reserved = metrics_.separatorWidth() + trash;
    const double room = size_.width - rect(BarComponent::apps).minX() - reserved - metrics_.edgePadding();
    return std::max(1, static_cast<int>(room / metrics_.itemWidth()));
}

int BarLayout::insertionIndex(int count, double pointX) const
{
    const double cell = metrics_.itemWidth();
    const double nearest = std::round((pointX - rect(BarComponent::apps).minX() - cell * 0.5) / cell);
    return static_cast<int>(std::min(std::max(nearest, 0.0), static_cast<double>(count)));
}

double BarLayout::leadingSeparatorX() const
{
    return rect(BarComponent::apps).minX() - metrics_.separatorWidth() * 0.5;
}

double BarLayout::trailingSeparatorX() const
{
    return buttonRect(buttonCount_).minX() + metrics_.separatorWidth() * 0.5;
}

CGRect BarLayout::magnifierBox() const
{
    constexpr double side = 14;
    const CGRect& box = rect(BarComponent::search);
    return { box.minX() + 8, box.midY() - side * 0.5, side, side };
}

CGRect BarLayout::searchFieldRect() const
{
    const CGRect& box = rect(BarComponent::search);
    const double left = magnifierBox().maxX() + 6;
    const NSFont font = NSFont::systemFont(metrics_.searchFont());
    const double lineHeight = std::ceil(font.ascender() - font.descender() + font.leading());
    return { left, box.midY() - lineHeight * 0.5, std::max(20.0, box.maxX() - left - 11), lineHeight };
}

CGRect BarLayout::hitRect(int hit) const
{
    const auto* found = std::ranges::find(hitOrder, hit, &std::pair<BarComponent, int>::second);
    return found != std::end(hitOrder) ? rect(found->first) : buttonRect(hit);
}

std::optional<int> BarLayout::hit(CGPoint point) const
{
    for (const auto& [component, value] : hitOrder)
        if (CGRectContainsPoint(rect(component), point))
            return value;
    return button(point);
}

std::optional<int> BarLayout::button(CGPoint point) const
{
    for (int position = 0; position < buttonCount_; ++position)
        if (CGRectContainsPoint(buttonRect(position), point))
            return position;
    return std::nullopt;
}
