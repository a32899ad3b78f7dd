#pragma once

#include "appkit/NSImage.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Something to open, as one row of a list.
struct SearchHit {
    NSImage icon;
    std::string title;
    /// The window's application, or what kind of thing it is.
    std::string subtitle;
    /// What choosing it does. May be called any time later: what has gone by then is passed over.
    std::function<void()> activate;
};

namespace Search {

/// The open windows whose title holds the query, in the order of the window index, then the applications that match it,
/// best first. Blanks around the query and the case of letters don't count; an empty query has no hits. Main thread.
std::vector<SearchHit> hits(std::string_view query, std::size_t limit = 8);

}
