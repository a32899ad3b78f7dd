#include "x11/KeyboardFocus.h"

#include "x11/Reply.h"
#include "x11/ToolkitConnection.h"

#include <QGuiApplication>
#include <QInputEvent>
#include <QWindow>

#include <algorithm>
#include <array>
#include <utility>

namespace x11 {
namespace {

/// Source: ICCCM 4.1.2.4, WM_HINTS. The first word says which of the others count.
void setTakesInput(xcb_connection_t* connection, xcb_window_t window, bool takesInput)
{
    constexpr std::uint32_t inputHint = 1;
    std::array<std::uint32_t, 9> hints {};
    const Reply<xcb_get_property_reply_t> present(xcb_get_property_reply(connection,
        xcb_get_property(connection, 0, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 0, hints.size()), nullptr));
    if (present && present->format == 32 && present->value_len <= hints.size())
        std::copy_n(static_cast<const std::uint32_t*>(xcb_get_property_value(present.get())), present->value_len,
            hints.begin());
    hints[0] |= inputHint;
    hints[1] = takesInput ? 1 : 0;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32,
        hints.size(), hints.data());
}

/// XCB_WINDOW_NONE when nothing has it.
xcb_window_t focusedWindow(xcb_connection_t* connection)
{
    const Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return focus ? focus->focus : xcb_window_t(XCB_WINDOW_NONE);
}

}

/// Knows when the user last did something, by the server's time in milliseconds, and has the panel say that it takes
/// input just while it really has the focus. A window manager that looks for the next window to focus may do so before
/// the panel has been told that its time is over.
class KeyboardFocus::Watch final : public QObject {
public:
    explicit Watch(xcb_window_t panel)
    {
        qGuiApp->installEventFilter(this);
        connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [panel](const QWindow* focused) {
            if (xcb_connection_t* connection = toolkitConnection())
                setTakesInput(connection, panel, focused && focused->winId() == panel);
        });
    }
    xcb_timestamp_t latest() const { return latest_; }

private:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            note(static_cast<const QInputEvent&>(*event));
            break;
        default:
            break;
        }
        return false;
    }

    /// While a screen reader listens, the toolkit shows it each key first, and then delivers a copy that has no time.
    void note(const QInputEvent& event)
    {
        if (event.timestamp() != 0)
            latest_ = static_cast<xcb_timestamp_t>(event.timestamp());
    }

    xcb_timestamp_t latest_ = XCB_CURRENT_TIME;
};

KeyboardFocus::KeyboardFocus(const WindowMirror& mirror, WindowManager& manager)
    : mirror_(mirror)
    , manager_(manager)
{
}

KeyboardFocus::~KeyboardFocus() = default;

void KeyboardFocus::take(xcb_window_t panel)
{
    xcb_connection_t* connection = toolkitConnection();
    if (!connection)
        return;
    if (holder_ != XCB_WINDOW_NONE && holder_ != panel)
        setTakesInput(connection, holder_, false);
    const xcb_window_t focused = focusedWindow(connection);
    if (focused != panel && focused != holder_)
        previous_ = focused;
    holder_ = panel;
    watch_ = std::make_unique<Watch>(panel);
    setTakesInput(connection, panel, true);
    xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, panel, XCB_CURRENT_TIME);
    xcb_flush(connection);
}

/// The same thing that the user did may also set the focus to some other window. So that the server keeps to that one,
/// whichever of the two reaches it first, this is dated just before what the user did. Where that is before the panel
/// took the focus, and so is passed over, nothing else has set it meanwhile.
void KeyboardFocus::giveBack()
{
    xcb_connection_t* connection = toolkitConnection();
    const xcb_window_t holder = std::exchange(holder_, XCB_WINDOW_NONE);
    const auto watch = std::exchange(watch_, nullptr);
    if (!connection || holder == XCB_WINDOW_NONE)
        return;
    setTakesInput(connection, holder, false);
    // A window manager that counts the panel as the active window wants to be asked for another one.
    if (mirror_.state().active == holder) {
        xcb_flush(connection);
        if (!manager_.isBringingForward())
            manager_.activateLast();
        return;
    }
    const xcb_timestamp_t latest = watch->latest();
    for (const xcb_timestamp_t time :
        { latest == XCB_CURRENT_TIME ? latest : latest - 1, xcb_timestamp_t(XCB_CURRENT_TIME) }) {
        if (focusedWindow(connection) != holder)
            return;
        const auto request = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT, previous_, time);
        if (const Reply<xcb_generic_error_t> gone { xcb_request_check(connection, request) })
            return manager_.activateLast();
    }
}

}
