#include "x11/ToolkitConnection.h"

#include "x11/Reply.h"

#include <QGuiApplication>

namespace x11 {

xcb_connection_t* toolkitConnection()
{
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->connection() : nullptr;
}

void quietenToolkit(xcb_window_t root)
{
    xcb_connection_t* connection = toolkitConnection();
    if (!connection)
        return;
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, root), nullptr));
    if (!attributes)
        return;
    const std::uint32_t events = attributes->your_event_mask & ~std::uint32_t(XCB_EVENT_MASK_PROPERTY_CHANGE);
    xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection);
}

}
