#pragma once

/// The user's Trash. Nothing is cached. Main thread.
namespace Trash {

/// Hidden files don't count; a folder that can't be read counts as empty.
bool isEmpty();

/// Shows the folder.
void open();

}
