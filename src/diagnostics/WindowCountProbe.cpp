#include "diagnostics/WindowCountProbe.h"

#include "appkit/NSRunningApplication.h"
#include "diagnostics/Report.h"
#include "system/WindowIndex.h"
#include "windowserver/CGWindow.h"

#include <algorithm>
#include <cctype>

namespace {

void report(const std::string& text)
{
    Report::line("[wcount] ", text);
}

std::string lowerCased(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

bool contains(const std::string& name, const std::string& fragment)
{
    return lowerCased(name).find(lowerCased(fragment)) != std::string::npos;
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

}

void WindowCountProbe::run(const std::string& appNameFragment)
{
    report(std::string("titles available (needs Screen Recording): ")
        + (WindowIndex::titlesAvailable() ? "true" : "false"));
    for (const auto& [pid, windows] : *WindowIndex::byPID()) {
        const auto owner = NSRunningApplication::runningApplication(pid);
        const std::string name = (owner ? owner->localizedName() : std::nullopt).value_or("?");
        if (contains(name, appNameFragment))
            reportCounted(name, pid, windows);
    }

    report("--- all CGWindowList entries for " + appNameFragment + " ---");
    const auto list = CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0);
    const Value::Array* entries = list ? list->array() : nullptr;
    for (const Value& window : entries ? *entries : Value::Array()) {
        const Value* name = window.find(kCGWindowOwnerName);
        if (name && name->string() && contains(*name->string(), appNameFragment))
            reportListed(window);
    }
}
