// What is typed into the search box, on a desktop with windows and applications of all sorts of names.

#include "Input.h"

#include "embedded/EmbeddedDesktop.h"
#include "search/Search.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"

#include "base/RunLoop.h"

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

constexpr std::size_t limit = 8;

/// Never ends: what it stands on may have ended before it.
struct World {
    ManualClock clock;
    std::unique_ptr<embedded::EmbeddedDesktop> desktop;

    World()
    {
        RunLoop::main().setClock(&clock);
        embedded::ScenarioBuilder desk;
        for (const char* name : { "Mail", "Cafe\u0301", "\u00c9diteur", "\u0130stanbul", "\u1e9eharp", "A B  C" })
            desk.window(desk.app(name).pid, std::string(name) + " \u2014 window").bounds = { 0, 0, 400, 300 };
        desk.installedApp("Browser");
        const auto folder = std::filesystem::temp_directory_path() / "vantry-fuzz-search";
        desktop = std::make_unique<embedded::EmbeddedDesktop>(desk, folder);
        host::Desktop::setCurrent(desktop.get());
    }
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const World* const world = new World;
    (void)world;
    if (Search::hits(Input::text(data, size), limit).size() > limit)
        std::abort();
    return 0;
}
