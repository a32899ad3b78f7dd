#pragma once

#include "x11/Connection.h"

namespace x11 {

/// By the selections that they own, programs say that they serve the screen in some way. Who comes and goes is told by
/// events from now on.
void watchSelections(const Connection& connection);

/// Whether the event tells that the selection has another owner, or none any more.
bool tellsOfSelection(const Connection& connection, const xcb_generic_event_t& event, xcb_atom_t selection);

}
