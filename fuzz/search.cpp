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

#include <unistd.h>

namespace {

constexpr std::size_t limit = 8;

class World {
public:
    World()
    {
        RunLoop::main().setClock(&clock_);
        embedded::ScenarioBuilder desk;
        for (const char* name : { "Mail", "Cafe\u0301", "\u00c9diteur", "\u0130stanbul", "\u1e9eharp", "A B  C" })
            desk.window(desk.app(name).pid, std::string(name) + " \u2014 window").bounds = { 0, 0, 400, 300 };
        desk.installedApp("Browser");
        path_ = std::filesystem::temp_directory_path() / ("vantry-fuzz-" + std::to_string(::getpid()));
        desktop_ = std::make_unique<embedded::EmbeddedDesktop>(desk, path_);
        host::Desktop::setCurrent(desktop_.get());
    }
    ~World()
    {
        host::Desktop::setCurrent(nullptr);
        desktop_.reset();
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

private:
    ManualClock clock_;
    std::filesystem::path path_;
    std::unique_ptr<embedded::EmbeddedDesktop> desktop_;
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const World world;
    if (Search::hits(Input::text(data, size), limit).size() > limit)
        std::abort();
    return 0;
}
