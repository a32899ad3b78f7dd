#include "x11/Atoms.h"

#include "x11/Reply.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace x11 {
namespace {

using Name = std::pair<xcb_atom_t Atoms::*, std::string_view>;

constexpr Name names[] = {
    { &Atoms::utf8String, "UTF8_STRING" },
    { &Atoms::compoundText, "COMPOUND_TEXT" },
    { &Atoms::wmName, "WM_NAME" },
    { &Atoms::wmClass, "WM_CLASS" },
    { &Atoms::wmClientMachine, "WM_CLIENT_MACHINE" },
    { &Atoms::wmTransientFor, "WM_TRANSIENT_FOR" },
    { &Atoms::wmHints, "WM_HINTS" },
    { &Atoms::wmProtocols, "WM_PROTOCOLS" },
    { &Atoms::wmDeleteWindow, "WM_DELETE_WINDOW" },
    { &Atoms::wmTakeFocus, "WM_TAKE_FOCUS" },
    { &Atoms::wmState, "WM_STATE" },
    { &Atoms::wmChangeState, "WM_CHANGE_STATE" },
    { &Atoms::netSupported, "_NET_SUPPORTED" },
    { &Atoms::netSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK" },
    { &Atoms::netClientList, "_NET_CLIENT_LIST" },
    { &Atoms::netClientListStacking, "_NET_CLIENT_LIST_STACKING" },
    { &Atoms::netNumberOfDesktops, "_NET_NUMBER_OF_DESKTOPS" },
    { &Atoms::netCurrentDesktop, "_NET_CURRENT_DESKTOP" },
    { &Atoms::netActiveWindow, "_NET_ACTIVE_WINDOW" },
    { &Atoms::netCloseWindow, "_NET_CLOSE_WINDOW" },
    { &Atoms::netMoveresizeWindow, "_NET_MOVERESIZE_WINDOW" },
    { &Atoms::netRestackWindow, "_NET_RESTACK_WINDOW" },
    { &Atoms::netFrameExtents, "_NET_FRAME_EXTENTS" },
    { &Atoms::gtkFrameExtents, "_GTK_FRAME_EXTENTS" },
    { &Atoms::netWmName, "_NET_WM_NAME" },
    { &Atoms::netWmPid, "_NET_WM_PID" },
    { &Atoms::netWmIcon, "_NET_WM_ICON" },
    { &Atoms::netWmDesktop, "_NET_WM_DESKTOP" },
    { &Atoms::netWmStrut, "_NET_WM_STRUT" },
    { &Atoms::netWmStrutPartial, "_NET_WM_STRUT_PARTIAL" },
    { &Atoms::kdeBlurBehindRegion, "_KDE_NET_WM_BLUR_BEHIND_REGION" },
    { &Atoms::netWmState, "_NET_WM_STATE" },
    { &Atoms::netWmStateAbove, "_NET_WM_STATE_ABOVE" },
    { &Atoms::netWmStateFullscreen, "_NET_WM_STATE_FULLSCREEN" },
    { &Atoms::netWmStateHidden, "_NET_WM_STATE_HIDDEN" },
    { &Atoms::netWmStateShaded, "_NET_WM_STATE_SHADED" },
    { &Atoms::netWmStateMaximizedVert, "_NET_WM_STATE_MAXIMIZED_VERT" },
    { &Atoms::netWmStateMaximizedHorz, "_NET_WM_STATE_MAXIMIZED_HORZ" },
    { &Atoms::netWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR" },
    { &Atoms::netWmStateSkipPager, "_NET_WM_STATE_SKIP_PAGER" },
    { &Atoms::netWmStateSticky, "_NET_WM_STATE_STICKY" },
    { &Atoms::netWmStateDemandsAttention, "_NET_WM_STATE_DEMANDS_ATTENTION" },
    { &Atoms::netWmWindowType, "_NET_WM_WINDOW_TYPE" },
    { &Atoms::netWmWindowTypeNormal, "_NET_WM_WINDOW_TYPE_NORMAL" },
    { &Atoms::netWmWindowTypeDialog, "_NET_WM_WINDOW_TYPE_DIALOG" },
    { &Atoms::netWmWindowTypeUtility, "_NET_WM_WINDOW_TYPE_UTILITY" },
    { &Atoms::netWmWindowTypeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR" },
    { &Atoms::netWmWindowTypeMenu, "_NET_WM_WINDOW_TYPE_MENU" },
    { &Atoms::netWmWindowTypeSplash, "_NET_WM_WINDOW_TYPE_SPLASH" },
    { &Atoms::netWmWindowTypeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION" },
    { &Atoms::netWmWindowTypeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU" },
    { &Atoms::netWmWindowTypePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU" },
    { &Atoms::netWmWindowTypeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP" },
    { &Atoms::netWmWindowTypeCombo, "_NET_WM_WINDOW_TYPE_COMBO" },
    { &Atoms::netWmWindowTypeDnd, "_NET_WM_WINDOW_TYPE_DND" },
    { &Atoms::netWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK" },
    { &Atoms::netWmWindowTypeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP" },
    { &Atoms::settings, "_XSETTINGS_SETTINGS" },
    { &Atoms::xkbAlt, "Alt" },
    { &Atoms::xkbSuper, "Super" },
    { &Atoms::trayColors, "_NET_SYSTEM_TRAY_COLORS" },
};

xcb_intern_atom_cookie_t request(xcb_connection_t* connection, std::string_view name)
{
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t answer(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie)
{
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}

Atoms internAtoms(xcb_connection_t* connection, int screenNumber)
{
    std::array<xcb_intern_atom_cookie_t, std::size(names)> cookies;
    for (std::size_t i = 0; i < cookies.size(); ++i)
        cookies[i] = request(connection, names[i].second);
    const auto compositor = request(connection, "_NET_WM_CM_S" + std::to_string(screenNumber));
    const auto settingsManager = request(connection, "_XSETTINGS_S" + std::to_string(screenNumber));
    const auto tray = request(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber));

    Atoms atoms {};
    for (std::size_t i = 0; i < cookies.size(); ++i)
        atoms.*names[i].first = answer(connection, cookies[i]);
    atoms.compositor = answer(connection, compositor);
    atoms.settingsManager = answer(connection, settingsManager);
    atoms.tray = answer(connection, tray);
    return atoms;
}

}
