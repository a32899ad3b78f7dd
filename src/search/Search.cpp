#include "search/Search.h"

#include "appkit/NSRunningApplication.h"
#include "foundation/NSString.h"
#include "search/AppCatalog.h"
#include "system/WindowIndex.h"
#include "system/WindowRaise.h"

#include <optional>

namespace {

/// Absent when the window's application has gone.
std::optional<SearchHit> hit(const WindowEntry& window)
{
    const auto application = NSRunningApplication::runningApplication(window.pid);
    if (!application)
        return std::nullopt;
    return SearchHit { application->icon().value_or(NSImage()), window.title,
        application->localizedName().value_or("Window"),
        [id = window.id, pid = window.pid] { WindowIndex::raise(id, pid); } };
}

SearchHit hit(const AppEntry& application)
{
    return { application.icon, application.name, "Application", [application] { AppCatalog::launch(application); } };
}

std::vector<SearchHit> windowHits(const std::string& wanted, std::size_t limit)
{
    std::vector<SearchHit> hits;
    for (const WindowEntry& window : WindowIndex::all()) {
        if (hits.size() >= limit)
            break;
        if (window.title.empty() || lowercaseString(window.title).find(wanted) == std::string::npos)
            continue;
        if (auto found = hit(window))
            hits.push_back(std::move(*found));
    }
    return hits;
}

}

std::vector<SearchHit> Search::hits(std::string_view query, std::size_t limit)
{
    const std::string text = stringByTrimmingWhitespaces(query);
    if (text.empty())
        return {};
    std::vector<SearchHit> hits = windowHits(lowercaseString(text), limit);
    for (const AppEntry& application : AppCatalog::search(text, limit - hits.size()))
        hits.push_back(hit(application));
    return hits;
}
