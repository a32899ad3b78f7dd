#include "selftest/SelfTest.h"

#include "foundation/NSUserDefaults.h"
#include "selftest/Checks.h"
#include "selftest/Groups.h"
#include "settings/Settings.h"
#include "system/Instances.h"

#include <optional>
#include <tuple>

namespace {

struct Group {
    const char* heading;
    void (*run)();
};

constexpr Group groups[] = {
    { "Settings persistence", SelfTest::settingsPersistence },
    { "Geometry", SelfTest::geometry },
    { "Finder button", SelfTest::finderButton },
    { "Ordering", SelfTest::ordering },
    { "Grouping", SelfTest::grouping },
    { "Window indexing", SelfTest::windowIndexing },
    { "Space filtering", SelfTest::spaceFiltering },
    { "Supporting types", SelfTest::supportingTypes },
    { "Crash safety", SelfTest::crashSafety },
    { "Displays", SelfTest::displays },
    { "Appearance", SelfTest::appearance },
    { "Window previews", SelfTest::windowPreviews },
    { "Alert clearance", SelfTest::alertClearance },
    { "Drag layout", SelfTest::dragLayout },
};

/// The settings that are put back.
constexpr auto kept = std::make_tuple(Settings::barSize, Settings::appOrder, Settings::grouping,
    Settings::showFinderButton, Settings::showTrash, Settings::currentSpaceOnly, Settings::manualOrder,
    Settings::multiDisplayMode, Settings::barEdge, Settings::componentOrder);

auto keptValues()
{
    return std::apply([](const auto&... settings) { return std::make_tuple(settings()...); }, kept);
}

template <class Values, std::size_t... places>
void putBack(const Values& values, std::index_sequence<places...>)
{
    (std::get<places>(kept).set(std::get<places>(values)), ...);
}

}

void SelfTest::run()
{
    report("=== Vantry self-test ===");
    std::optional<NSUserDefaults::Rehearsal> rehearsal;
    if (Instances::anotherRuns()) {
        skip("settings aren't stored, only remembered: another instance, which is running, would follow them");
        rehearsal.emplace();
    }
    const auto values = keptValues();
    for (const Group& group : groups) {
        report("");
        report(std::string("-- ") + group.heading);
        group.run();
    }
    putBack(values, std::make_index_sequence<std::tuple_size_v<decltype(values)>>());
    check("settings restored to their original values", keptValues() == values);
    report("");
    report("=== " + std::to_string(passed()) + " passed, " + std::to_string(failed()) + " failed ===");
}
