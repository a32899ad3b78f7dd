#pragma once

/// The right to drive other applications' windows. Main thread.
namespace SpaceSwitcher {

/// Has the system ask the user for accessibility where this program isn't trusted with it yet. Nothing waits for the
/// answer.
void ensureAccessibility();

}
