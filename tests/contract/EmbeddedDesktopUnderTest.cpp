#include "contract/DesktopUnderTest.h"

#include "base/RunLoop.h"
#include "embedded/EmbeddedDesktop.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"

#include <QWidget>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// The embedded desktop on a clock that the test steps.
class EmbeddedDesktopUnderTest final : public DesktopUnderTest {
public:
    EmbeddedDesktopUnderTest()
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(&clock_);
        fs::create_directories(root_);
        embedded::ScenarioBuilder desk;
        desk.displays[0].frame = { 0, 0, 1024, 768 };
        desktop_ = std::make_unique<embedded::EmbeddedDesktop>(desk, root_.string());
        desktop_->calls().setRecording(true);
        host::Desktop::setCurrent(desktop_.get());
    }

    ~EmbeddedDesktopUnderTest() override
    {
        host::Desktop::setCurrent(nullptr);
        desktop_.reset();
        RunLoop::main().reset();
        RunLoop::main().setClock(nullptr);
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    host::Desktop& desktop() override { return *desktop_; }

    bool settle(const std::function<bool()>& condition) override
    {
        constexpr double step = 0.05;
        for (double passed = 0; passed < 3; passed += step) {
            if (condition())
                return true;
            clock_.advance(step);
        }
        return condition();
    }

    pid_t startProgram(const std::string& name) override
    {
        return world().launch({ .name = name,
            .bundleIdentifier = "org.example." + name,
            .bundlePath = "/Applications/" + name + ".app",
            .icon = {},
            .faults = {} });
    }
    void endProgram(pid_t pid) override { world().quit(pid); }

    std::uint32_t openWindow(pid_t pid, const std::string& title, const CGRect& frame) override
    {
        return world().open({ .owner = pid, .title = title, .bounds = frame, .spaces = {}, .faults = {} });
    }
    void closeWindow(std::uint32_t window) override { world().close(window); }
    std::string install(const std::string& name) override
    {
        embedded::Scenario::Application application;
        application.path = "/Applications/" + name + ".app";
        application.displayName = name;
        application.windows.push_back({ .title = name, .bounds = smallFrame, .spaces = {}, .faults = {} });
        world().install(application);
        return application.path;
    }
    void demandAttention(std::uint32_t window) override { world().demandAttention(window); }
    void setTitle(std::uint32_t window, const std::string& title) override { world().setTitle(window, title); }
    void minimise(std::uint32_t window) override { world().setMinimised(window, true); }
    void focus(std::uint32_t window) override { world().focus(window); }
    void enterFullScreen(std::uint32_t window) override { world().setFullScreen(window, true); }

    void typeKey(std::uint16_t key, std::uint64_t flags) override { desktop_->keyboard().press({ key, flags }); }
    std::size_t pressesSeen(std::uint32_t window, std::uint16_t key) override
    {
        const auto calls = desktop_->calls().named("key");
        return static_cast<std::size_t>(std::ranges::count_if(calls, [&](const embedded::Call& call) {
            return call.window == window && call.value == host::AttributeValue(static_cast<double>(key));
        }));
    }

    bool shows(const QWidget& panel) override { return panel.isVisible(); }
    void movePointer(CGPoint point) override { desktop_->pointer().move(point); }
    void click(CGPoint point) override { desktop_->pointer().move(point); }
    void switchToSpace(std::size_t index) override
    {
        world().showSpace(world().screens().all().front().spaces.at(index).id);
    }

private:
    static constexpr CGRect smallFrame { 200, 150, 230, 170 };

    embedded::World& world() { return desktop_->world(); }

    ManualClock clock_;
    fs::path root_ = fs::temp_directory_path() / ("vantry-contract-" + std::to_string(getpid()));
    std::unique_ptr<embedded::EmbeddedDesktop> desktop_;
};

[[maybe_unused]] const bool added = [] {
    desktopKinds().push_back({ "embedded", [] { return std::make_unique<EmbeddedDesktopUnderTest>(); } });
    return true;
}();

}
