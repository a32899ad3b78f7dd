#pragma once

#include "freedesktop/BusService.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace freedesktop {

/// How the user wants programs to look, as the portal of settings says it ("org.freedesktop.appearance"), as soon as
/// and as long as it says so. A portal that doesn't run isn't started. Main thread.
class PortalAppearance {
public:
    explicit PortalAppearance(LastingBus& bus);

    /// The accent colour, 0xRRGGBB: where the portal names none, how the theme of the toolkit marks what is selected.
    /// Absent where nobody has chosen one.
    std::optional<std::uint32_t> accentColor() const;
    /// Whether dark windows are preferred.
    bool prefersDark() const { return scheme_ == dark; }

    std::function<void()> onAccentColor;
    std::function<void()> onScheme;

private:
    void ask(const char* key);
    void hear(GVariant* arguments);
    void set(std::string_view key, GVariant* value);

    BusService portal_;
    std::optional<std::uint32_t> chosen_;
    static constexpr std::uint32_t dark = 1;
    std::uint32_t scheme_ = 0;
};

}
