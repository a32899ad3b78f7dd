#pragma once

namespace BarVisibility {

/// Hides every bar, or shows them again: the bars follow the setting. Main thread.
void toggle();

}
