#include "diagnostics/WindowCountProbe.h"

#include "diagnostics/ProbedApplication.h"
#include "diagnostics/Report.h"
#include "system/Dictionaries.h"
#include "system/WindowIndex.h"
#include "windowserver/CGWindow.h"

namespace {

void report(const std::string& text)
{
    Report::line("[wcount] ", text);
}

std::string spaces(const WindowEntry& window)
{
    std::string list;
    for (const auto space : window.spaceIDs)
        list += (list.empty() ? "" : ", ") + std::to_string(space);
    return "[" + list + "]";
}

void reportCounted(const std::string& name, pid_t pid, const std::vector<WindowEntry>& windows)
{
    report(name + " pid=" + std::to_string(pid) + ": " + std::to_string(windows.size()) + " counted window(s)");
    for (const WindowEntry& window : windows) {
        const auto place = std::to_string(static_cast<long long>(window.bounds.x)) + ","
            + std::to_string(static_cast<long long>(window.bounds.y));
        report("  id=" + std::to_string(window.id) + " " + Report::size(window.bounds) + " at (" + place
            + ") spaces=" + spaces(window) + " title=\"" + window.title + "\"");
    }
}

void reportListed(const Value& window)
{
    const auto text = [&](const char* key) {
        const Value* value = window.find(key);
        return value ? description(*value) : "-";
    };
    const Value* form = window.find(kCGWindowBounds);
    const auto bounds = form ? CGRectMakeWithDictionaryRepresentation(*form) : std::nullopt;
    report("  " + (bounds ? Report::size(*bounds) : "-") + "  layer=" + text(kCGWindowLayer)
        + " alpha=" + text(kCGWindowAlpha) + " title=" + text(kCGWindowName));
}

std::size_t reportAllCounted(const std::string& fragment)
{
    std::size_t count = 0;
    for (const auto& [pid, windows] : *WindowIndex::byPID()) {
        const std::string name = Report::nameOf(pid);
        if (!ProbedApplication::matches(name, fragment))
            continue;
        reportCounted(name, pid, windows);
        count += windows.size();
    }
    return count;
}

std::size_t reportAllListed(const std::string& fragment)
{
    std::size_t count = 0;
    const auto list = CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0);
    for (const Value& window : dictionaries(list)) {
        const Value* name = window.find(kCGWindowOwnerName);
        if (!name || !name->string() || !ProbedApplication::matches(*name->string(), fragment))
            continue;
        reportListed(window);
        ++count;
    }
    return count;
}

}

void WindowCountProbe::run(const std::string& appNameFragment)
{
    report("titles available (needs Screen Recording): " + Report::flag(WindowIndex::titlesAvailable()));
    const std::size_t counted = reportAllCounted(appNameFragment);
    report("--- all CGWindowList entries for " + appNameFragment + " ---");
    const std::size_t listed = reportAllListed(appNameFragment);
    report("=== " + std::to_string(counted) + " counted of " + std::to_string(listed) + " listed windows ===");
}
