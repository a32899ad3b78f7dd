#include "contract/X11Fixture.h"

#include "x11/WindowMirror.h"

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

/// A mirror of its own, which counts what it does.
class CountingMirror {
public:
    CountingMirror() { mirror_.start(); }

    /// Takes what has come; true once nothing has for a while.
    bool isQuiet()
    {
        bool isBusy = false;
        while (const x11::Event event = connection_->nextEvent()) {
            isBusy = true;
            mirror_.handle(*event);
        }
        isBusy |= mirror_.refresh();
        if (isBusy)
            lastBusy_ = Clock::now();
        return Clock::now() - lastBusy_ > std::chrono::milliseconds(200);
    }

    /// Something has been set off that may not have come yet.
    void expectMore() { lastBusy_ = Clock::now(); }

    std::size_t windowCount() const { return mirror_.state().windows.size(); }
    unsigned requestCount() const { return xcb_no_operation(*connection_).sequence; }

private:
    std::string reason_;
    std::unique_ptr<x11::Connection> connection_ = x11::Connection::open(reason_);
    x11::WindowMirror mirror_ { *connection_ };
    Clock::time_point lastBusy_ = Clock::now();
};

}

TEST_F(X11, InACrowdAChangeOfOneWindowCostsNoMoreThanAmongFew)
{
    constexpr std::size_t crowd = 80;
    // An open window costs some 60 requests, and may be heard of in several steps.
    constexpr unsigned mostRequests = 140;

    CountingMirror mirror;
    const auto program = start("crowd");
    const auto open = [&] {
        const auto window = under_->createWindow(program.pid, { 200, 150, 500, 400 });
        under_->show(window);
        return window;
    };
    std::vector<std::uint32_t> windows;
    // A slow window manager takes seconds for all of them: each ten are waited for.
    while (windows.size() < crowd) {
        windows.push_back(open());
        if (windows.size() % 10 == 0) {
            ASSERT_TRUE(settle([&] { return mirror.isQuiet() && mirror.windowCount() > windows.size(); }));
        }
    }

    const std::pair<const char*, std::function<void()>> changes[] {
        { "one opens", [&] { windows.push_back(open()); } },
        { "one has another title", [&] { under_->setTitle(windows[20], "Other"); } },
        { "one is iconified", [&] { under_->minimise(windows.back()); } },
        { "one closes", [&] { under_->closeWindow(windows[30]); } },
    };
    for (const auto& [what, change] : changes) {
        const unsigned requests = mirror.requestCount();
        change();
        mirror.expectMore();
        EXPECT_TRUE(settle([&] { return mirror.isQuiet(); }));
        EXPECT_LT(mirror.requestCount() - requests, mostRequests) << what;
    }
}
