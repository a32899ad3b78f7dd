#pragma once

#include "freedesktop/AccessibleTree.h"
#include "freedesktop/Badges.h"
#include "host/Accessibility.h"
#include "x11/ProcessList.h"

namespace x11 {

/// Applications and their windows as accessibility elements. Reading them answers from the mirror and asks nobody, so
/// no application can hang it; what is in the windows is asked of the applications.
class WindowElements final : public host::Accessibility {
public:
    WindowElements(const WindowMirror& mirror, WindowManager& manager, const ProcessList& processes)
        : mirror_(mirror)
        , manager_(manager)
        , processes_(processes)
    {
    }

    bool isTrusted(bool) override { return true; }
    AXError read(const host::ElementID& element, host::Attribute attribute, double timeout,
        host::AttributeValue& value) override;
    AXError write(const host::ElementID& element, host::Attribute attribute, double timeout,
        const host::AttributeValue& value) override;
    AXError isSettable(
        const host::ElementID& element, host::Attribute attribute, double timeout, bool& settable) override;
    AXError perform(const host::ElementID& element, host::Action action, double timeout) override;

private:
    AXError readApplication(pid_t pid, host::Attribute attribute, double timeout, host::AttributeValue& value);
    AXError readWindow(xcb_window_t window, host::Attribute attribute, host::AttributeValue& value) const;
    AXError readFocusedWindow(pid_t pid, host::AttributeValue& value) const;
    AXError readWindows(pid_t pid, host::AttributeValue& value) const;
    AXError writeApplication(pid_t pid, host::Attribute attribute, const host::AttributeValue& value) const;
    AXError writeWindow(xcb_window_t window, host::Attribute attribute, const host::AttributeValue& value) const;
    bool isApplication(pid_t pid) const;
    bool isFrontmost(pid_t pid) const;

    const WindowMirror& mirror_;
    WindowManager& manager_;
    const ProcessList& processes_;
    freedesktop::AccessibleTree tree_;
};

}
