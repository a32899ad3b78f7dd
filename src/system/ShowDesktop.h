#pragma once

/// Clears the screen by hiding every regular application, and brings them back. One that refuses to hide has its
/// windows minimised instead. What was hidden or minimised before stays so. Main thread.
namespace ShowDesktop {

/// Whether something that was cleared away is waiting to be brought back.
bool isShowingDesktop();

/// Clears the screen, or restores it.
void toggle();

/// Drops what the user brought back by other means, and with it all when nothing is left hidden. Before each `toggle`.
void forgetIfStale();

}
