#pragma once

#include <xcb/xcb.h>

namespace x11 {

/// The names that this desktop and other programs exchange through the server.
struct Atoms {
    xcb_atom_t utf8String;
    xcb_atom_t compoundText;
    xcb_atom_t wmName;
    xcb_atom_t wmClass;
    xcb_atom_t wmClientMachine;
    xcb_atom_t wmTransientFor;
    xcb_atom_t wmHints;
    xcb_atom_t wmProtocols;
    xcb_atom_t wmDeleteWindow;
    xcb_atom_t wmTakeFocus;
    xcb_atom_t wmState;
    xcb_atom_t wmChangeState;

    xcb_atom_t netSupported;
    xcb_atom_t netSupportingWmCheck;
    xcb_atom_t netClientList;
    xcb_atom_t netClientListStacking;
    xcb_atom_t netNumberOfDesktops;
    xcb_atom_t netCurrentDesktop;
    xcb_atom_t netActiveWindow;
    xcb_atom_t netCloseWindow;
    xcb_atom_t netMoveresizeWindow;
    xcb_atom_t netRestackWindow;
    xcb_atom_t netFrameExtents;
    xcb_atom_t gtkFrameExtents;

    xcb_atom_t netWmName;
    xcb_atom_t netWmPid;
    xcb_atom_t netWmIcon;
    xcb_atom_t netWmDesktop;
    xcb_atom_t netWmStrut;
    xcb_atom_t netWmStrutPartial;
    xcb_atom_t kdeBlurBehindRegion;

    xcb_atom_t netWmState;
    xcb_atom_t netWmStateAbove;
    xcb_atom_t netWmStateFullscreen;
    xcb_atom_t netWmStateHidden;
    xcb_atom_t netWmStateShaded;
    xcb_atom_t netWmStateMaximizedVert;
    xcb_atom_t netWmStateMaximizedHorz;
    xcb_atom_t netWmStateSkipTaskbar;
    xcb_atom_t netWmStateSkipPager;
    xcb_atom_t netWmStateSticky;
    xcb_atom_t netWmStateDemandsAttention;

    xcb_atom_t netWmWindowType;
    xcb_atom_t netWmWindowTypeNormal;
    xcb_atom_t netWmWindowTypeDialog;
    xcb_atom_t netWmWindowTypeUtility;
    xcb_atom_t netWmWindowTypeToolbar;
    xcb_atom_t netWmWindowTypeMenu;
    xcb_atom_t netWmWindowTypeSplash;
    xcb_atom_t netWmWindowTypeNotification;
    xcb_atom_t netWmWindowTypeDropdownMenu;
    xcb_atom_t netWmWindowTypePopupMenu;
    xcb_atom_t netWmWindowTypeTooltip;
    xcb_atom_t netWmWindowTypeCombo;
    xcb_atom_t netWmWindowTypeDnd;
    xcb_atom_t netWmWindowTypeDock;
    xcb_atom_t netWmWindowTypeDesktop;

    /// The names of modifiers of the keyboard extension.
    xcb_atom_t xkbAlt;
    xcb_atom_t xkbSuper;

    /// The selection that a compositing manager of the screen owns.
    xcb_atom_t compositor;
    /// The selection that the screen's settings manager owns, and the property of its window.
    xcb_atom_t settingsManager;
    xcb_atom_t settings;
    /// The selection that the screen's tray owns, and the property of its window with the colours of its icons.
    xcb_atom_t tray;
    xcb_atom_t trayColors;
};

/// All names in one round trip.
Atoms internAtoms(xcb_connection_t* connection, int screenNumber);

}
