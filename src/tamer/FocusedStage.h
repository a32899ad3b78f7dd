#pragma once

/// The focused window of the frontmost program. Main thread.
namespace FocusedStage {

/// Brings it back from full screen, or clear of the bar, or to where it belongs since the bar has changed.
void run();

}
