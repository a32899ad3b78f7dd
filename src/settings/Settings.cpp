#include "settings/Settings.h"

#include "foundation/NSNotificationCenter.h"
#include "log/Log.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr std::string_view opacityKey = "barOpacity";
constexpr std::string_view componentOrderKey = "componentOrder";

double clampedOpacity(double opacity)
{
    // What is no number at all comes out as the lower end.
    return std::fmin(1.0, std::fmax(0.5, opacity));
}

/// Null for the component that is always visible.
const Settings::Setting<bool>* visibility(BarComponent component)
{
    switch (component) {
    case BarComponent::launcher:
        return &Settings::showLauncher;
    case BarComponent::search:
        return &Settings::showSearch;
    case BarComponent::showDesktop:
        return &Settings::showDesktopButton;
    case BarComponent::finder:
        return &Settings::showFinderButton;
    case BarComponent::trash:
        return &Settings::showTrash;
    case BarComponent::apps:
        return nullptr;
    }
    return nullptr;
}

}

namespace Settings {

void write(const Value& value, std::string_view key)
{
    NSUserDefaults::standard().setObject(value, key);
    if (Log::enabled())
        Log::debug("setting ", key, " -> ", description(value));
    NSNotificationCenter::defaultCenter().post(didChange);
}

void followOtherPrograms()
{
    // Never removed: the settings are there as long as the process.
    static const auto observer = NSNotificationCenter::defaultCenter().addObserver(
        NSUserDefaultsDidChangeNotification, [](const NSNotification&) {
            Log::debug("settings: changed by another program");
            NSNotificationCenter::defaultCenter().post(didChange);
        });
    // The store is watched from its first use on.
    NSUserDefaults::standard();
}

StringMap Stored<StringMap>::read(const NSUserDefaults& store, std::string_view key, Empty)
{
    StringMap map;
    for (const auto& [name, value] : store.dictionaryForKey(key).value_or(Value::Dictionary())) {
        const std::string* text = value.string();
        if (!text)
            return {};
        map.emplace(name, *text);
    }
    return map;
}

Value Stored<StringMap>::value(const StringMap& map)
{
    Value::Dictionary dictionary;
    for (const auto& [name, text] : map)
        dictionary.set(name, text);
    return dictionary;
}

double BarOpacity::operator()() const
{
    const NSUserDefaults store = NSUserDefaults::standard();
    return store.objectForKey(opacityKey) ? clampedOpacity(store.doubleForKey(opacityKey)) : 1.0;
}

void BarOpacity::set(double opacity) const
{
    write(clampedOpacity(opacity), opacityKey);
}

std::vector<BarComponent> ComponentOrder::operator()() const
{
    std::vector<BarComponent> order;
    for (const std::string& text : NSUserDefaults::standard().stringArrayForKey(componentOrderKey).value_or(Strings()))
        if (const auto component = fromRawValue<BarComponent>(text))
            order.push_back(*component);

    const auto stored = order;
    std::ranges::copy_if(allCases<BarComponent>(), std::back_inserter(order),
        [&](BarComponent component) { return std::ranges::find(stored, component) == stored.end(); });
    return order;
}

void ComponentOrder::set(const std::vector<BarComponent>& order) const
{
    Value::Array rawValues;
    for (const BarComponent component : order)
        rawValues.emplace_back(rawValue(component));
    write(std::move(rawValues), componentOrderKey);
}

bool isVisible(BarComponent component)
{
    const auto* setting = visibility(component);
    return !setting || (*setting)();
}

void setVisible(BarComponent component, bool visible)
{
    if (const auto* setting = visibility(component))
        setting->set(visible);
}

}
