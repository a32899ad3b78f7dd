#include "freedesktop/Icons.h"

namespace freedesktop {

const char* const Icons::applicationSvg = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
<rect x="6" y="10" width="52" height="44" rx="7" fill="#5c6f82"/>
<rect x="10" y="21" width="44" height="29" rx="3" fill="#f3f5f7"/>
<circle cx="13.5" cy="15.5" r="2.5" fill="#e9edf1"/><circle cx="21.5" cy="15.5" r="2.5" fill="#e9edf1"/>
</svg>)";

const char* const Icons::allApplicationsSvg = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
<rect x="4" y="4" width="56" height="56" rx="13" fill="#e8ebef"/>
<g fill="#3b4a5a"><circle cx="19" cy="19" r="5"/><circle cx="32" cy="19" r="5"/><circle cx="45" cy="19" r="5"/>
<circle cx="19" cy="32" r="5"/><circle cx="32" cy="32" r="5"/><circle cx="45" cy="32" r="5"/>
<circle cx="19" cy="45" r="5"/><circle cx="32" cy="45" r="5"/><circle cx="45" cy="45" r="5"/></g>
</svg>)";

Icons::Handle Icons::builtIn(const char* svg)
{
    return std::make_shared<IconSource>(IconSource { IconSource::Svg { svg } });
}

Icons::Handle Icons::named(const std::string& name)
{
    const auto [place, isNew] = known_.try_emplace(name);
    if (!isNew)
        return place->second;
    const auto path = theme_->find(name);
    if (!path)
        return nullptr;
    if (const auto handedOut = deferred_.find(name); handedOut != deferred_.end())
        return known_[name] = handedOut->second;
    // The same picture can go by several names.
    Handle& byPath = known_[*path];
    if (!byPath)
        byPath = std::make_shared<IconSource>(IconSource { IconSource::File { *path } });
    return known_[name] = byPath;
}

Icons::Handle Icons::ofApplication(const std::string& name)
{
    if (const auto known = known_.find(name); known != known_.end())
        return known->second ? known->second : application_;
    Handle& icon = deferred_[name];
    if (!icon) {
        const auto find = [theme = theme_, otherwise = application_, name]() -> Handle {
            const auto path = theme->find(name);
            return path ? std::make_shared<IconSource>(IconSource { IconSource::File { *path } }) : otherwise;
        };
        icon = std::make_shared<IconSource>(IconSource { IconSource::Deferred { find } });
    }
    return icon;
}

}
