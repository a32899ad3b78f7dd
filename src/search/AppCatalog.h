#pragma once

#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "foundation/NSURL.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// An installed application.
struct AppEntry {
    /// Its file name without the ".app".
    std::string name;
    NSURL url;
    NSImage icon;
};

/// Which applications are installed: every ".app" that lies directly in one of a fixed set of folders. They are listed
/// once, when first asked for; what is installed later shows at the next start. Main thread.
namespace AppCatalog {

/// In the order in which they are listed.
const std::vector<std::string>& searchDirectories();

/// Sorted by name, as the user's language has it. An application that lies in two folders stands there twice.
const std::vector<AppEntry>& all();

/// Those whose name begins with the query, then those that hold it elsewhere; of each the catalogue's first. Blanks
/// around the query and the case of letters don't count.
std::vector<AppEntry> search(std::string_view query, std::size_t limit = 8);

/// Opens the application; how that goes isn't looked at.
void launch(const AppEntry& entry);
/// The same for one of which only the place is known.
void open(const NSURL& url);

/// One entry for each application, which carries its `NSURL`.
std::shared_ptr<NSMenu> buildMenu(const NSMenuItem::Action& action);

}
