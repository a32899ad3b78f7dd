#include "x11/DesktopScale.h"

#include "x11/Burst.h"
#include "x11/Selections.h"
#include "x11/XSettings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace x11 {
namespace {

constexpr double plainResolution = 96;
constexpr double settingsUnit = 1024;
constexpr double greatest = 4;
constexpr std::uint32_t mostLongs = 65536;

/// A number above 0 at the start of the text; read without the locale.
std::optional<double> positive(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && value > 0 ? std::optional(value) : std::nullopt;
}

/// A factor of 1 is often set beside a resolution, and means no more than that.
std::optional<double> environmentFactor()
{
    for (const char* name : { "QT_SCALE_FACTOR", "GDK_SCALE" }) {
        const char* value = std::getenv(name);
        const auto factor = value ? positive(value) : std::nullopt;
        if (factor && *factor > 1)
            return factor;
    }
    return std::nullopt;
}

std::optional<double> setting(const ScaleSources& sources, const char* name)
{
    const auto found = sources.settings.find(name);
    return found != sources.settings.end() && found->second > 0 ? std::optional<double>(found->second) : std::nullopt;
}

std::optional<double> settingsFactor(const ScaleSources& sources)
{
    const auto factor = setting(sources, "Gdk/WindowScalingFactor");
    const auto unscaled = setting(sources, "Gdk/UnscaledDPI");
    const auto resolution = setting(sources, "Xft/DPI");
    if (factor && unscaled)
        return *factor * *unscaled / settingsUnit / plainResolution;
    if (resolution)
        return *resolution / settingsUnit / plainResolution;
    return factor;
}

/// The value of "NAME:" in a resource database, one a line.
std::optional<double> resource(std::string_view database, std::string_view name)
{
    while (!database.empty()) {
        const std::string_view line = database.substr(0, database.find('\n'));
        database.remove_prefix(std::min(line.size() + 1, database.size()));
        if (line.starts_with(name) && line.substr(name.size()).starts_with(':'))
            return positive(line.substr(name.size() + 1));
    }
    return std::nullopt;
}

double serverResolution(const xcb_screen_t& screen)
{
    constexpr double millimetres = 25.4;
    if (screen.height_in_millimeters == 0)
        return plainResolution;
    return screen.height_in_pixels * millimetres / screen.height_in_millimeters;
}

}

double scaleOf(const ScaleSources& sources)
{
    double scale = sources.server / plainResolution;
    if (sources.environment)
        scale = *sources.environment;
    else if (const auto factor = settingsFactor(sources))
        scale = *factor;
    else if (sources.resource)
        scale = *sources.resource / plainResolution;
    return std::clamp(std::round(scale * 4) / 4, 1.0, greatest);
}

DesktopScale::DesktopScale(Connection& connection)
    : connection_(connection)
{
    sources_.environment = environmentFactor();
    sources_.server = serverResolution(connection.screen());
}

void DesktopScale::handle(const xcb_generic_event_t& event)
{
    isStale_ |= tellsOfSelection(connection_, event, connection_.atoms().settingsManager);
    if ((event.response_type & ~0x80) != XCB_PROPERTY_NOTIFY)
        return;
    const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (property.window == connection_.root())
        isStale_ |= property.atom == XCB_ATOM_RESOURCE_MANAGER;
    else
        isStale_ |= property.window == manager_;
}

bool DesktopScale::refresh()
{
    if (!std::exchange(isStale_, false))
        return false;
    Burst burst(connection_);
    burst.ask(xcb_get_selection_owner(connection_, connection_.atoms().settingsManager), xcb_get_selection_owner_reply,
        [this](const xcb_get_selection_owner_reply_t* selection) {
            manager_ = selection ? selection->owner : xcb_window_t(XCB_WINDOW_NONE);
        });
    burst.property(connection_.root(), XCB_ATOM_RESOURCE_MANAGER, mostLongs,
        [this](const Property& database) { sources_.resource = resource(database.bytes(XCB_ATOM_STRING), "Xft.dpi"); });
    burst.finish();

    sources_.settings.clear();
    if (manager_ == XCB_WINDOW_NONE)
        return true;
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, manager_, XCB_CW_EVENT_MASK, &events);
    const xcb_atom_t settings = connection_.atoms().settings;
    burst.property(manager_, settings, mostLongs,
        [&](const Property& property) { sources_.settings = readXSettings(property.bytes(settings)); });
    burst.finish();
    return true;
}

}
