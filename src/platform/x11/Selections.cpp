#include "x11/Selections.h"

#include <xcb/xfixes.h>

namespace x11 {

void watchSelections(const Connection& connection)
{
    if (!connection.extension(xcb_xfixes_id))
        return;
    // The server answers nothing else before it has been told the version.
    xcb_xfixes_query_version_unchecked(connection, 1, 0);
    constexpr std::uint32_t events = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
        | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
        | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
    const Atoms& atoms = connection.atoms();
    for (const xcb_atom_t selection : { atoms.compositor, atoms.settingsManager, atoms.tray })
        xcb_xfixes_select_selection_input(connection, connection.root(), selection, events);
}

bool tellsOfSelection(const Connection& connection, const xcb_generic_event_t& event, xcb_atom_t selection)
{
    const auto* fixes = connection.extension(xcb_xfixes_id);
    return fixes && (event.response_type & ~0x80) == fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY
        && reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event).selection == selection;
}

}
