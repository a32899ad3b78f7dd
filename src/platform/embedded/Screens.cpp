#include "embedded/Screens.h"

#include <algorithm>

namespace embedded {

namespace {

bool has(const Screen& screen, std::uint64_t space)
{
    return std::any_of(
        screen.spaces.begin(), screen.spaces.end(), [&](const auto& candidate) { return candidate.id == space; });
}

double overlap(const CGRect& a, const CGRect& b)
{
    const CGRect common = CGRectIntersection(a, b);
    return CGRectIsNull(common) ? -1 : common.width * common.height;
}

}

Screens::Screens(const std::vector<Scenario::Display>& displays)
{
    for (const auto& display : displays)
        add(display);
}

void Screens::add(const Scenario::Display& display)
{
    Screen screen { display.number, display.uuid, display.frame, display.menuBarHeight, display.dockInset,
        display.spaces, 0 };
    if (screen.spaces.empty()) {
        std::uint64_t id = 1;
        while (withSpace(id))
            ++id;
        screen.spaces.push_back({ .id = id, .type = Scenario::Space::desktop, .pid = {} });
    }
    screen.currentSpace = display.currentSpace.value_or(screen.spaces.front().id);
    screens_.push_back(std::move(screen));
}

void Screens::remove(std::size_t index)
{
    screens_.erase(screens_.begin() + static_cast<std::ptrdiff_t>(index));
}

void Screens::setFrame(std::size_t index, const CGRect& frame)
{
    screens_.at(index).frame = frame;
}

std::size_t Screens::containing(const CGRect& rect) const
{
    const CGRect onScreen = flipped(rect);
    const auto best = std::max_element(screens_.begin(), screens_.end(),
        [&](const Screen& a, const Screen& b) { return overlap(a.frame, onScreen) < overlap(b.frame, onScreen); });
    return static_cast<std::size_t>(best - screens_.begin());
}

std::optional<std::size_t> Screens::withSpace(std::uint64_t space) const
{
    const auto place
        = std::find_if(screens_.begin(), screens_.end(), [&](const Screen& screen) { return has(screen, space); });
    if (place == screens_.end())
        return std::nullopt;
    return static_cast<std::size_t>(place - screens_.begin());
}

bool Screens::isCurrent(std::uint64_t space) const
{
    return std::any_of(
        screens_.begin(), screens_.end(), [&](const Screen& screen) { return screen.currentSpace == space; });
}

bool Screens::isFullScreen(std::uint64_t space) const
{
    const auto index = withSpace(space);
    if (!index)
        return false;
    const auto& spaces = screens_[*index].spaces;
    return std::any_of(spaces.begin(), spaces.end(),
        [&](const auto& each) { return each.id == space && each.type == Scenario::Space::fullScreen; });
}

bool Screens::show(std::uint64_t space)
{
    const auto index = withSpace(space);
    if (!index || screens_[*index].currentSpace == space)
        return false;
    screens_[*index].currentSpace = space;
    return true;
}

std::uint64_t Screens::addFullScreen(std::size_t index, pid_t owner)
{
    std::uint64_t id = 1;
    for (const Screen& screen : screens_) {
        for (const auto& space : screen.spaces)
            id = std::max(id, space.id + 1);
    }
    screens_.at(index).spaces.push_back({ .id = id, .type = Scenario::Space::fullScreen, .pid = owner });
    return id;
}

void Screens::removeSpace(std::uint64_t space, std::uint64_t instead)
{
    const auto index = withSpace(space);
    if (!index)
        return;
    Screen& screen = screens_[*index];
    std::erase_if(screen.spaces, [&](const auto& each) { return each.id == space; });
    if (screen.currentSpace == space)
        screen.currentSpace = has(screen, instead) ? instead : screen.spaces.front().id;
}

CGRect Screens::flipped(const CGRect& rect) const
{
    const double top = screens_.empty() ? 0 : screens_.front().frame.maxY();
    return { rect.x, top - rect.maxY(), rect.width, rect.height };
}

}
