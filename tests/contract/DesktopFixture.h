#pragma once

#include "contract/DesktopUnderTest.h"

#include "host/Accessibility.h"
#include "host/Applications.h"
#include "host/Displays.h"
#include "host/Pointer.h"
#include "host/Processes.h"
#include "host/Session.h"
#include "host/Surfaces.h"
#include "host/Windows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

/// What tests ask of the desktop that they run on, in a line.
template <class Under>
class DesktopFixture {
protected:
    using Attribute = host::Attribute;

    host::Processes& processes() { return under_->desktop().processes(); }
    host::Windows& windows() { return under_->desktop().windows(); }
    host::Accessibility& accessibility() { return under_->desktop().accessibility(); }
    host::Applications& applications() { return under_->desktop().applications(); }
    host::Displays& displays() { return under_->desktop().displays(); }
    host::Surfaces& surfaces() { return under_->desktop().surfaces(); }
    host::Session& session() { return under_->desktop().session(); }
    bool settle(const std::function<bool()>& condition) { return under_->settle(condition); }

    /// Ends the desktop; what its callbacks captured goes with the test.
    void endDesktop()
    {
        if (!under_)
            return;
        processes().onEvent = nullptr;
        windows().onChange = nullptr;
        displays().onChange = nullptr;
        under_.reset();
    }

    /// Along the lower edge.
    void showBar(QWidget& bar, double height)
    {
        const CGRect frame = displays().all().front().frame;
        surfaces().adopt(bar, { .role = host::SurfaceRole::bottomBar, .level = 101 }, { 0, 0, frame.width, height });
        surfaces().orderFront(bar);
        ASSERT_TRUE(settle([&] { return under_->shows(bar); }));
    }

    // The window list. Of a window that isn't listed, what it tells is empty.

    host::Window listed(std::uint32_t window)
    {
        const auto record = windows().find(window);
        return record ? *record : host::Window {};
    }
    bool isListed(std::uint32_t window) { return place(windows().all(), window).has_value(); }
    bool isOnScreen(std::uint32_t window) { return place(windows().onScreen(), window).has_value(); }
    bool isInFrontOf(std::uint32_t front, std::uint32_t back)
    {
        const auto list = windows().onScreen();
        return place(list, front) && place(list, back) && *place(list, front) < *place(list, back);
    }
    std::string title(std::uint32_t window) { return listed(window).title.value_or(std::string()); }
    CGRect bounds(std::uint32_t window) { return listed(window).bounds.value_or(CGRect()); }
    std::vector<std::uint64_t> spaces(std::uint32_t window)
    {
        return listed(window).spaces.value_or(std::vector<std::uint64_t>());
    }

    // Accessibility.

    static host::ElementID application(pid_t pid) { return { pid, host::ElementID::Kind::application, 0 }; }
    static host::ElementID element(pid_t pid, std::uint32_t window)
    {
        return { pid, host::ElementID::Kind::window, window };
    }

    template <class T>
    std::optional<T> read(const host::ElementID& of, Attribute attribute)
    {
        host::AttributeValue value;
        if (accessibility().read(of, attribute, timeout, value) != kAXErrorSuccess || !std::holds_alternative<T>(value))
            return std::nullopt;
        return std::get<T>(value);
    }
    AXError readError(const host::ElementID& of, Attribute attribute)
    {
        host::AttributeValue value;
        return accessibility().read(of, attribute, timeout, value);
    }
    /// Absent where that can't be told.
    std::optional<bool> isSettable(const host::ElementID& of, Attribute attribute)
    {
        bool settable = false;
        const AXError error = accessibility().isSettable(of, attribute, timeout, settable);
        return error == kAXErrorSuccess ? std::optional(settable) : std::nullopt;
    }
    std::vector<pid_t> fullScreenOwners()
    {
        std::vector<pid_t> owners;
        const auto displays = windows().displaySpaces();
        for (const auto& space : displays.at(0).spaces)
            if (space.isFullScreen && space.owner)
                owners.push_back(*space.owner);
        return owners;
    }
    AXError write(const host::ElementID& of, Attribute attribute, const host::AttributeValue& value)
    {
        return accessibility().write(of, attribute, timeout, value);
    }
    AXError raise(const host::ElementID& window)
    {
        return accessibility().perform(window, host::Action::raise, timeout);
    }

    struct Program {
        pid_t pid = 0;
        std::uint32_t window = 0;
    };

    std::unique_ptr<Under> under_;

private:
    static constexpr double timeout = 0.5;

    static std::optional<std::ptrdiff_t> place(const host::Windows::List& list, std::uint32_t window)
    {
        const auto found = std::ranges::find(list, window, [](const auto& each) { return each->number; });
        return found == list.end() ? std::nullopt : std::optional(found - list.begin());
    }
};
