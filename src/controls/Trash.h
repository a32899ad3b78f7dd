#pragma once

#include "foundation/NSURL.h"

#include <vector>

/// The user's Trash. Nothing is cached. Main thread.
namespace Trash {

/// Hidden files don't count; a folder that can't be read counts as empty.
bool isEmpty();

/// Moves files there. Whether at least one has gone.
bool throwAway(const std::vector<NSURL>& files);

/// Shows the folder.
void open();

}
