#include "accessibility/DockTree.h"

#include "base/PerDesktop.h"
#include "host/Badges.h"
#include "host/Desktop.h"

namespace {

using host::AttributeValue;
using host::ElementID;
using Kind = ElementID::Kind;

/// The list's number; tiles count on from there.
constexpr std::uint64_t list = 1;
constexpr std::uint64_t firstTile = 2;

host::Badges& badges()
{
    return host::Desktop::current().badges();
}

/// The tiles as they were when the application was last asked for its list: a tile is named by its place in them.
std::vector<host::Badge>& tiles()
{
    struct Tiles {
        std::vector<host::Badge> badges;
    };
    return perDesktop<Tiles>().badges;
}

AXError readList(pid_t dock, double timeout, AttributeValue& value)
{
    auto now = badges().read(timeout);
    if (!now)
        return kAXErrorCannotComplete;
    tiles() = *std::move(now);
    value = std::vector { ElementID { dock, Kind::other, list } };
    return kAXErrorSuccess;
}

AXError readTiles(pid_t dock, AttributeValue& value)
{
    std::vector<ElementID> elements;
    for (std::size_t index = 0; index < tiles().size(); ++index)
        elements.push_back({ dock, Kind::other, firstTile + index });
    value = std::move(elements);
    return kAXErrorSuccess;
}

AXError readTile(const host::Badge& tile, std::string_view attribute, AttributeValue& value)
{
    if (attribute == "AXTitle") {
        value = tile.application;
        return kAXErrorSuccess;
    }
    if (attribute != "AXStatusLabel")
        return kAXErrorAttributeUnsupported;
    if (tile.text.empty())
        return kAXErrorNoValue;
    value = tile.text;
    return kAXErrorSuccess;
}

}

bool DockTree::holds(const ElementID& element)
{
    return element.kind != Kind::window && badges().owner() == element.pid;
}

AXError DockTree::read(const ElementID& element, std::string_view attribute, double timeout, AttributeValue& value)
{
    if (element.id >= firstTile) {
        const std::size_t index = element.id - firstTile;
        return index < tiles().size() ? readTile(tiles()[index], attribute, value) : kAXErrorInvalidUIElement;
    }
    if (attribute != "AXChildren")
        return kAXErrorAttributeUnsupported;
    return element.id == list ? readTiles(element.pid, value) : readList(element.pid, timeout, value);
}
