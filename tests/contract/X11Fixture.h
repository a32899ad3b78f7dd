#pragma once

#include "contract/X11DesktopUnderTest.h"

#include "base/Value.h"
#include "host/Accessibility.h"
#include "host/Applications.h"
#include "host/Displays.h"
#include "host/Pointer.h"
#include "host/Processes.h"
#include "host/Session.h"
#include "host/Surfaces.h"
#include "host/Windows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Desktop entries written for one test.
class TestEntries {
public:
    ~TestEntries()
    {
        for (const std::string& id : ids_)
            std::filesystem::remove(temporaryHome() + "/data/applications/" + id + ".desktop");
    }

    void write(const std::string& id, const std::string& lines)
    {
        writeAtHome("data/applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\n" + lines);
        ids_.push_back(id);
    }

private:
    std::vector<std::string> ids_;
};

/// The X11 desktop for tests of what it alone does. Skipped where there is no X server, or not with the window manager
/// that a test is about.
class X11 : public testing::Test {
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "no X server";
        under_ = std::make_unique<X11DesktopUnderTest>();
    }

    void TearDown() override
    {
        if (!under_)
            return;
        // What they captured has gone with the test.
        windows().onChange = nullptr;
        displays().onChange = nullptr;
        processes().onEvent = nullptr;
        under_.reset();
    }

    static bool hasWindowManager()
    {
        const char* manager = std::getenv("VANTRY_WM");
        return !manager || std::string_view(manager) != "none";
    }

    host::Processes& processes() { return under_->desktop().processes(); }
    host::Windows& windows() { return under_->desktop().windows(); }
    host::Accessibility& accessibility() { return under_->desktop().accessibility(); }
    host::Applications& applications() { return under_->desktop().applications(); }
    host::Displays& displays() { return under_->desktop().displays(); }
    host::Surfaces& surfaces() { return under_->desktop().surfaces(); }
    host::Session& session() { return under_->desktop().session(); }
    bool settle(const std::function<bool()>& condition) { return under_->settle(condition); }

    /// What the window list says of a window under a key.
    std::optional<Value> entry(std::uint32_t window, const char* key)
    {
        const auto list = windows().list(false);
        for (const Value& each : *list->array()) {
            if (each.find("kCGWindowNumber")->integer<std::uint32_t>() != window)
                continue;
            const Value* value = each.find(key);
            return value ? std::optional(*value) : std::nullopt;
        }
        return std::nullopt;
    }

    bool isListed(std::uint32_t window) { return entry(window, "kCGWindowNumber").has_value(); }

    std::string title(std::uint32_t window)
    {
        const auto name = entry(window, "kCGWindowName");
        return name && name->string() ? *name->string() : "?";
    }

    CGRect bounds(std::uint32_t window)
    {
        const auto value = entry(window, "kCGWindowBounds");
        const auto rect = value ? CGRectMakeWithDictionaryRepresentation(*value) : std::nullopt;
        return rect.value_or(CGRect {});
    }

    static host::ElementID application(pid_t pid) { return { pid, host::ElementID::Kind::application, 0 }; }
    static host::ElementID element(pid_t pid, std::uint32_t window)
    {
        return { pid, host::ElementID::Kind::window, window };
    }

    template <class T>
    std::optional<T> read(const host::ElementID& of, std::string_view attribute)
    {
        host::AttributeValue value;
        if (accessibility().read(of, attribute, 0.5, value) != kAXErrorSuccess || !std::holds_alternative<T>(value))
            return std::nullopt;
        return std::get<T>(value);
    }

    AXError write(const host::ElementID& of, std::string_view attribute, const host::AttributeValue& value)
    {
        return accessibility().write(of, attribute, 0.5, value);
    }

    struct Program {
        pid_t pid = 0;
        std::uint32_t window = 0;
    };

    /// A program of that class with a window that has the given properties ("VERB REST") before it is shown.
    Program start(const std::string& name, const std::vector<std::pair<std::string, std::string>>& properties = {},
        const CGRect& frame = { 200, 150, 500, 400 })
    {
        Program program { under_->startProgram(name), 0 };
        program.window = under_->createWindow(program.pid, frame);
        for (const auto& [verb, rest] : properties)
            under_->tell(program.window, verb, rest);
        under_->tell(program.window, "map");
        EXPECT_TRUE(settle([&] { return isListed(program.window); })) << name;
        return program;
    }

    /// Ends a program and waits until the desktop knows.
    void stop(const Program& program)
    {
        under_->endProgram(program.pid);
        EXPECT_TRUE(settle([&] { return !isListed(program.window); }));
    }

    std::unique_ptr<X11DesktopUnderTest> under_;
};
