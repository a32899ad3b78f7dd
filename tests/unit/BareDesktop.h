#pragma once

#include "base/RunLoop.h"
#include "host/Accessibility.h"
#include "host/Applications.h"
#include "host/Badges.h"
#include "host/Capture.h"
#include "host/Desktop.h"
#include "host/Displays.h"
#include "host/Keyboard.h"
#include "host/Pointer.h"
#include "host/Processes.h"
#include "host/Session.h"
#include "host/Surfaces.h"
#include "host/Windows.h"

#include <QWidget>

#include <unistd.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// A desktop that tells what a plain list of open windows tells: of each its title, the identifier of its application,
/// and whether it is active or minimised. It knows no bounds, processes, spaces, pointer, pictures or keys. Windows can
/// be activated, minimised and closed; that is all. Main thread.
class BareDesktop final : public host::Desktop,
                          host::Processes,
                          host::Applications,
                          host::Windows,
                          host::Accessibility,
                          host::Surfaces,
                          host::Session {
public:
    struct Toplevel {
        std::uint32_t number = 0;
        std::string application;
        std::string title;
        bool isMinimised = false;
    };

    /// `folder` is for its settings. The applications are installed.
    BareDesktop(std::string folder, std::vector<std::string> applications)
        : folder_(std::move(folder))
        , installed_(std::move(applications))
    {
        update();
    }

    void show(std::uint32_t number, const std::string& application, const std::string& title)
    {
        toplevels_.push_back({ number, application, title });
        bringForward(number);
    }
    void close(std::uint32_t number)
    {
        std::erase_if(toplevels_, [&](const Toplevel& each) { return each.number == number; });
        active_ = toplevels_.empty() ? 0 : toplevels_.back().number;
        update();
    }
    void bringForward(std::uint32_t number)
    {
        active_ = number;
        setMinimised(number, false);
    }
    void setMinimised(std::uint32_t number, bool minimised)
    {
        if (Toplevel* window = toplevel(number))
            window->isMinimised = minimised;
        if (minimised && active_ == number)
            active_ = 0;
        update();
    }

    Toplevel* toplevel(std::uint32_t number)
    {
        const auto place = std::ranges::find(toplevels_, number, &Toplevel::number);
        return place == toplevels_.end() ? nullptr : &*place;
    }
    std::uint32_t active() const { return active_; }
    /// The number that an application has as a process: no real process has such a one.
    pid_t pid(const std::string& application) const
    {
        return -2 - static_cast<pid_t>(std::ranges::find(installed_, application) - installed_.begin());
    }
    QWidget* keyboardHolder() const { return keyboardHolder_; }
    const std::vector<std::string>& launched() const { return launched_; }

    host::Displays& displays() override { return displays_; }
    host::Processes& processes() override { return *this; }
    host::Applications& applications() override { return *this; }
    host::Windows& windows() override { return *this; }
    host::Badges& badges() override { return badges_; }
    host::Accessibility& accessibility() override { return *this; }
    host::Pointer& pointer() override { return pointer_; }
    host::Keyboard& keyboard() override { return keyboard_; }
    host::Surfaces& surfaces() override { return *this; }
    host::Capture& capture() override { return capture_; }
    host::Session& session() override { return *this; }

private:
    using Record = std::shared_ptr<const host::Process>;
    using Attribute = host::Attribute;
    using ElementID = host::ElementID;

    static std::string pathOf(const std::string& application) { return "/Applications/" + application + ".app"; }
    static std::uint32_t numberOf(const ElementID& window) { return static_cast<std::uint32_t>(window.id); }
    template <class T, class Member>
    static T first(const std::vector<T>& list, Member member, const auto& wanted)
    {
        const auto place = std::ranges::find_if(list, [&](const T& each) { return (*each).*member == wanted; });
        return place == list.end() ? nullptr : *place;
    }

    struct Displays final : host::Displays {
        const std::vector<host::Display>& all() override { return only; }
        std::optional<std::size_t> main() override { return 0; }
        const std::vector<host::Display> only { { 1, "BARE", { 0, 0, 1280, 800 }, { 0, 0, 1280, 800 } } };
    };

    const std::vector<Record>& running() override { return running_; }
    Record find(pid_t pid) override { return first(running_, &host::Process::pid, pid); }
    std::optional<pid_t> frontmost() override
    {
        const Toplevel* active = toplevel(active_);
        return active ? std::optional(pid(active->application)) : std::nullopt;
    }
    bool activate(pid_t pid) override
    {
        const auto own = windowsOf(pid);
        if (!own.empty())
            bringForward(own.front());
        return !own.empty();
    }
    bool hide(pid_t pid) override { return setHidden(pid, true); }
    bool unhide(pid_t pid) override { return setHidden(pid, false); }
    bool terminate(pid_t pid) override
    {
        return std::ranges::for_each(windowsOf(pid), [this](std::uint32_t number) { close(number); }), true;
    }
    bool forceTerminate(pid_t) override { return false; }

    std::optional<std::string> identifier(const std::string& path) override
    {
        const auto place = std::ranges::find(installed_, path, pathOf);
        return place == installed_.end() ? std::nullopt : std::optional(*place);
    }
    std::optional<std::string> displayName(const std::string& path) override { return identifier(path); }
    std::shared_ptr<const IconSource> icon(const std::string&) override { return nullptr; }
    std::optional<std::vector<std::string>> bundles(const std::string& folder) override
    {
        std::vector<std::string> names;
        if (folder == "/Applications")
            for (const std::string& application : installed_)
                names.push_back(application + ".app");
        return names;
    }
    bool open(const std::string& path) override
    {
        const auto application = identifier(path);
        if (application && !activate(pid(*application)))
            launched_.push_back(*application);
        return application.has_value();
    }
    bool openAnother(const std::string& path) override { return open(path); }

    List all() override { return windows_; }
    List onScreen() override
    {
        List shown = windows_;
        std::erase_if(shown, [](const auto& window) { return !window->isOnScreen; });
        return shown;
    }
    std::shared_ptr<const host::Window> find(std::uint32_t number) override
    {
        return first(windows_, &host::Window::number, number);
    }

    bool isTrusted(bool) override { return true; }
    AXError read(
        const host::ElementID& element, host::Attribute attribute, double, host::AttributeValue& value) override
    {
        const Toplevel* window = toplevel(numberOf(element));
        const auto elementOf = [&](std::uint32_t number) {
            return ElementID { element.pid, ElementID::Kind::window, number };
        };
        if (attribute == Attribute::windows) {
            auto& elements = value.emplace<std::vector<ElementID>>();
            std::ranges::transform(windowsOf(element.pid), std::back_inserter(elements), elementOf);
        } else if (attribute == Attribute::focusedWindow && frontmost() == element.pid) {
            value = elementOf(active_);
        } else if (attribute == Attribute::title && window) {
            value = window->title;
        } else if (attribute == Attribute::minimized && window) {
            value = window->isMinimised;
        } else {
            return kAXErrorAttributeUnsupported;
        }
        return kAXErrorSuccess;
    }
    AXError write(
        const host::ElementID& element, host::Attribute attribute, double, const host::AttributeValue& value) override
    {
        if (attribute == Attribute::minimized)
            setMinimised(numberOf(element), std::get<bool>(value));
        else if (attribute == Attribute::main)
            bringForward(numberOf(element));
        else if (attribute == Attribute::frontmost)
            activate(element.pid);
        else
            return kAXErrorAttributeUnsupported;
        return kAXErrorSuccess;
    }
    AXError isSettable(const host::ElementID&, Attribute, double, bool&) override { return kAXErrorNotImplemented; }
    AXError perform(const host::ElementID& window, host::Action, double) override
    {
        bringForward(numberOf(window));
        return kAXErrorSuccess;
    }

    void adopt(QWidget& widget, const host::SurfaceStyle&, const CGRect& frame) override { setFrame(widget, frame); }
    void release(QWidget&) override { }
    void setRole(QWidget&, host::SurfaceRole) override { }
    void setFrame(QWidget& widget, const CGRect& frame) override
    {
        widget.resize(static_cast<int>(frame.width), static_cast<int>(frame.height));
    }
    void orderFront(QWidget& widget) override { widget.show(); }
    void orderOut(QWidget& widget) override { widget.hide(); }
    void takeKeyboard(QWidget& widget) override { keyboardHolder_ = &widget; }
    void giveBackKeyboard() override { keyboardHolder_ = nullptr; }

    std::string preferencesFolder() override { return folder_; }
    std::string homeFolder() override { return folder_; }
    std::string locate(const std::string& path) override { return path; }

    std::vector<std::uint32_t> windowsOf(pid_t owner) const
    {
        std::vector<std::uint32_t> own;
        for (const Toplevel& each : toplevels_)
            if (pid(each.application) == owner)
                own.push_back(each.number);
        return own;
    }
    bool setHidden(pid_t pid, bool hidden)
    {
        for (const std::uint32_t each : windowsOf(pid))
            if (hidden ? !toplevel(each)->isMinimised && hidden_.insert(each).second : hidden_.erase(each) > 0)
                setMinimised(each, hidden);
        return true;
    }
    bool isHidden(pid_t pid) const
    {
        return std::ranges::any_of(windowsOf(pid), [this](std::uint32_t each) { return hidden_.contains(each); });
    }
    void update()
    {
        running_ = { std::make_shared<const host::Process>(host::Process {
            getpid(), host::ActivationPolicy::accessory, "com.merrowen.vantry", {}, "Vantry", {}, false }) };
        windows_.clear();
        for (const auto& [number, application, title, isMinimised] : toplevels_) {
            const pid_t owner = pid(application);
            windows_.push_back(
                std::make_shared<const host::Window>(host::Window { number, owner, title, 0, {}, {}, !isMinimised }));
            if (!find(owner))
                running_.push_back(
                    std::make_shared<const host::Process>(host::Process { owner, host::ActivationPolicy::regular,
                        application, pathOf(application), application, {}, isHidden(owner) }));
        }
        RunLoop::main().perform([this] { tell(); });
    }
    void tell()
    {
        const auto front = frontmost();
        if (onEvent && front && front != std::exchange(toldFront_, front))
            onEvent(host::ProcessEvent::activated, find(*front));
        if (host::Windows::onChange)
            host::Windows::onChange();
    }

    Displays displays_;
    host::Badges badges_;
    host::Pointer pointer_;
    host::Keyboard keyboard_;
    host::Capture capture_;
    const std::string folder_;
    const std::vector<std::string> installed_;
    std::vector<Toplevel> toplevels_;
    std::uint32_t active_ = 0;
    std::set<std::uint32_t> hidden_;
    std::vector<Record> running_;
    List windows_;
    std::optional<pid_t> toldFront_;
    QWidget* keyboardHolder_ = nullptr;
    std::vector<std::string> launched_;
};
