#pragma once

/// Light and dark windows, for a toolkit that has no theme of the desktop to take them from. Main thread.
namespace freedesktop::Scheme {

/// Nothing where the toolkit has a theme: that one decides.
void follow(bool isDark);

}
