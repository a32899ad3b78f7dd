#include "embedded/Dock.h"

#include "base/PreferenceFile.h"
#include "base/PropertyList.h"
#include "base/Value.h"

#include <filesystem>
#include <fstream>

namespace embedded {

namespace {

constexpr double defaultTileSize = 48;

Value tileEntry(const Scenario::Tile& tile)
{
    return Value::Dictionary { { "tile-type", "file-tile" },
        { "tile-data",
            Value::Dictionary { { "file-label", tile.label },
                { "file-data", Value::Dictionary { { "_CFURLString", tile.url }, { "_CFURLStringType", 15 } } } } } };
}

std::optional<Scenario::Tile> tileOf(const Value& entry)
{
    const Value* data = entry.find("tile-data");
    const Value* label = data ? data->find("file-label") : nullptr;
    const Value* file = data ? data->find("file-data") : nullptr;
    const Value* url = file ? file->find("_CFURLString") : nullptr;
    if (!label || !label->string() || !url || !url->string())
        return std::nullopt;
    return Scenario::Tile { *label->string(), *url->string() };
}

Value::Dictionary read(const std::string& file)
{
    const auto value = PropertyList::parse(readFile(file).value_or(""));
    return value && value->dictionary() ? *value->dictionary() : Value::Dictionary {};
}

Dock::Edge edgeNamed(const Value* orientation)
{
    const std::string* name = orientation ? orientation->string() : nullptr;
    if (name && *name == "left")
        return Dock::Edge::left;
    if (name && *name == "right")
        return Dock::Edge::right;
    return Dock::Edge::bottom;
}

}

void Dock::seed(const std::vector<Scenario::Tile>& tiles) const
{
    if (std::filesystem::exists(file_))
        return;
    Value::Array entries;
    for (const auto& tile : tiles)
        entries.push_back(tileEntry(tile));
    const Value preferences = Value::Dictionary { { "persistent-apps", std::move(entries) }, { "autohide", false },
        { "magnification", true }, { "orientation", "bottom" }, { "tilesize", static_cast<int>(defaultTileSize) } };
    std::ofstream(file_, std::ios::binary) << PropertyList::xml(preferences);
}

void Dock::readPreferences()
{
    const auto preferences = read(file_);
    const Value* hides = preferences.find("autohide");
    const Value* size = preferences.find("tilesize");
    const Value* apps = preferences.find("persistent-apps");

    hides_ = hides && hides->boolean().value_or(false);
    edge_ = edgeNamed(preferences.find("orientation"));
    tileSize_ = size ? size->number().value_or(defaultTileSize) : defaultTileSize;
    tiles_.clear();
    if (!apps || !apps->array())
        return;
    for (const Value& entry : *apps->array()) {
        if (auto tile = tileOf(entry))
            tiles_.push_back(*std::move(tile));
    }
}

}
