#pragma once

#include "base/RunLoop.h"
#include "embedded/EmbeddedDesktop.h"
#include "host/Desktop.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

/// A test on an embedded desktop of its own, in a fresh folder, on a clock that stands still. Describe the desktop with
/// `desk`, then `start()` it:
///
///     const pid_t mail = desk.app("Mail").pid;
///     desk.window(mail, "Inbox");
///     start();
///     world().hide(mail);   // what a user or another program does
///     settle();             // lets the news arrive
///     advance(1.5);         // lets timers fire
///     calls().named("AXRaise", mail).size();
class DesktopTest : public testing::Test {
protected:
    DesktopTest()
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(&clock);
        static int count = 0;
        root_ = std::filesystem::temp_directory_path()
            / ("vantry-test-" + std::to_string(getpid()) + "-" + std::to_string(++count));
        std::filesystem::create_directories(root_);
    }

    ~DesktopTest() override
    {
        stop();
        RunLoop::main().reset();
        RunLoop::main().setClock(nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    /// Once a test. Calls are recorded from here on.
    void start()
    {
        desktop_ = std::make_unique<embedded::EmbeddedDesktop>(desk, root_.string());
        desktop_->calls().setRecording(true);
        host::Desktop::setCurrent(desktop_.get());
    }

    /// What a log-out does: the desktop goes, its files stay.
    void stop()
    {
        host::Desktop::setCurrent(nullptr);
        desktop_.reset();
    }

    embedded::EmbeddedDesktop& desktop() { return *desktop_; }
    embedded::World& world() { return desktop_->world(); }
    embedded::CallLog& calls() { return desktop_->calls(); }
    const std::filesystem::path& root() const { return root_; }

    /// Seconds.
    void advance(double seconds) { clock.advance(seconds); }
    void settle() { advance(0); }

    ManualClock clock;
    embedded::ScenarioBuilder desk;

private:
    std::filesystem::path root_;
    std::unique_ptr<embedded::EmbeddedDesktop> desktop_;
};
