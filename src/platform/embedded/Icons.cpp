#include "embedded/Icons.h"

#include "base/IconSource.h"
#include "embedded/Art.h"

namespace embedded {

namespace {

constexpr const char* generalName = "application";

std::optional<IconSource> load(const std::string& name)
{
    if (name.starts_with('/'))
        return IconSource { IconSource::File { name } };
    auto text = Art::read("apps/" + name + ".svg");
    if (!text)
        return std::nullopt;
    return IconSource { IconSource::Svg { *std::move(text) } };
}

}

std::shared_ptr<const IconSource> Icons::find(const std::optional<std::string>& name)
{
    if (!name)
        return nullptr;
    const auto known = icons_.find(*name);
    if (known != icons_.end())
        return known->second;

    const auto source = load(*name);
    if (!source && *name == generalName)
        return nullptr;
    const auto icon = source ? std::make_shared<const IconSource>(*source) : general();
    icons_.emplace(*name, icon);
    return icon;
}

std::shared_ptr<const IconSource> Icons::general()
{
    return find(generalName);
}

}
