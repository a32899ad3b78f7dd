#include "x11/ToolkitConnection.h"

#include <QGuiApplication>

namespace x11 {

xcb_connection_t* toolkitConnection()
{
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->connection() : nullptr;
}

}
