#pragma once

#include "contract/DesktopFixture.h"
#include "contract/X11DesktopUnderTest.h"

#include <cstdlib>
#include <filesystem>
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
class X11 : public testing::Test, protected DesktopFixture<X11DesktopUnderTest> {
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "no X server";
        under_ = std::make_unique<X11DesktopUnderTest>();
    }

    void TearDown() override { endDesktop(); }

    static bool hasWindowManager()
    {
        const char* manager = std::getenv("VANTRY_WM");
        return !manager || std::string_view(manager) != "none";
    }

    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property)
    {
        return under_->numbers(window, property);
    }

    /// A program of that class with a window that has the given properties before it is shown.
    Program start(const std::string& name, const std::vector<std::string>& properties = {},
        const CGRect& frame = { 200, 150, 500, 400 })
    {
        Program program { under_->startProgram(name), 0 };
        program.window = under_->createWindow(program.pid, frame);
        for (const std::string& property : properties)
            under_->setProperty(program.window, property);
        under_->show(program.window);
        EXPECT_TRUE(settle([&] { return isListed(program.window); })) << name;
        return program;
    }

    /// Lets the window manager end what it is about, and the desktop hear of it.
    void hear()
    {
        settle([turns = 0]() mutable { return ++turns > 100; });
    }

    /// Ends a program and waits until the desktop knows.
    void stop(const Program& program)
    {
        under_->endProgram(program.pid);
        EXPECT_TRUE(settle([&] { return !isListed(program.window); }));
    }
};
