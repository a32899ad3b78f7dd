#include "x11/WindowRecord.h"

#include <limits>

namespace x11 {
namespace {

struct Layers {
    int plain;
    int above;
};

/// By `WindowKind`. The values are the levels of the window server's classes of windows.
constexpr Layers layersOfKinds[] = {
    { 0, 3 },
    { 0, 8 },
    { 3, 3 },
    { 0, 8 },
    { 8, 8 },
    { 101, 101 },
    { 20, 20 },
    { std::numeric_limits<std::int32_t>::min() + 20, std::numeric_limits<std::int32_t>::min() + 20 },
};

}

WindowKind WindowFacts::kind() const
{
    return declaredKind.value_or(isTransient ? WindowKind::dialog : WindowKind::normal);
}

int WindowFacts::layer() const
{
    const Layers layers = layersOfKinds[static_cast<std::size_t>(kind())];
    return states.above ? layers.above : layers.plain;
}

bool WindowFacts::isPartOfDesktop() const
{
    return kind() == WindowKind::dock || kind() == WindowKind::desktop;
}

bool WindowFacts::isOrdinary() const
{
    return (kind() == WindowKind::normal || kind() == WindowKind::dialog) && !states.skipTaskbar;
}

}
