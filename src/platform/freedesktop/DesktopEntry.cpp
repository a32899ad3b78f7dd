#include "freedesktop/DesktopEntry.h"

#include <algorithm>
#include <map>

namespace freedesktop {
namespace {

std::string_view trimmed(std::string_view text)
{
    const auto from = text.find_first_not_of(" \t\r");
    if (from == text.npos)
        return {};
    return text.substr(from, text.find_last_not_of(" \t\r") - from + 1);
}

std::string_view takeLine(std::string_view& text)
{
    const auto end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return trimmed(line);
}

/// A value with its escape sequences resolved.
std::string unescaped(std::string_view value)
{
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const char c = value[++i];
        result += c == 's' ? ' ' : c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    return result;
}

std::string_view takeWord(std::string_view& text)
{
    text = trimmed(text);
    if (text.empty())
        return {};
    const bool isQuoted = text.front() == '"';
    if (isQuoted)
        text.remove_prefix(1);
    const auto end = std::min(text.find_first_of(isQuoted ? "\"" : " \t"), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return word;
}

/// The program that a command line runs, behind "env" and its assignments.
std::string programOf(std::string_view commandLine)
{
    std::string_view word = takeWord(commandLine);
    while (word == "env" || word == "/usr/bin/env" || word.find('=') != word.npos)
        word = takeWord(commandLine);
    return std::string(word);
}

using Fields = std::map<std::string_view, std::string_view>;

/// Most of an entry is translations of texts that aren't needed here.
bool isWanted(std::string_view key)
{
    return key.find('[') == key.npos || key.starts_with("Name[");
}

Fields mainGroup(std::string_view text)
{
    Fields fields;
    bool isInside = false;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with('[')) {
            if (isInside)
                break;
            isInside = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (!isInside || line.starts_with('#') || equals == line.npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        if (isWanted(key))
            fields.emplace(key, trimmed(line.substr(equals + 1)));
    }
    return fields;
}

std::string_view localName(const Fields& fields, const std::vector<std::string>& languages)
{
    for (const std::string& language : languages) {
        const auto found = fields.find("Name[" + language + "]");
        if (found != fields.end())
            return found->second;
    }
    const auto plain = fields.find("Name");
    return plain == fields.end() ? std::string_view() : plain->second;
}

bool isInList(std::string_view list, std::string_view wanted)
{
    while (!list.empty()) {
        const auto end = std::min(list.find(';'), list.size());
        if (trimmed(list.substr(0, end)) == wanted)
            return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

/// The first of the desktop's names that either list holds decides.
bool isForDesktop(
    std::optional<std::string_view> only, std::string_view never, const std::vector<std::string>& desktops)
{
    for (const std::string& desktop : desktops) {
        if (only && isInList(*only, desktop))
            return true;
        if (isInList(never, desktop))
            return false;
    }
    return !only;
}

}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, const EntryReader& reader)
{
    const Fields fields = mainGroup(text);
    const auto field = [&](std::string_view key) {
        const auto found = fields.find(key);
        return found == fields.end() ? std::string_view() : found->second;
    };
    if (field("Type") != "Application" || field("Hidden") == "true")
        return std::nullopt;

    DesktopEntry entry;
    entry.name = unescaped(localName(fields, reader.languages));
    entry.icon = unescaped(field("Icon"));
    entry.startupWmClass = unescaped(field("StartupWMClass"));
    entry.commandLine = unescaped(field("Exec"));
    entry.program = programOf(entry.commandLine);
    entry.executable = entry.program.substr(entry.program.rfind('/') + 1);
    entry.isFileManager
        = isInList(field("Categories"), "FileManager") && isInList(field("MimeType"), "inode/directory");
    entry.tryExecutable = unescaped(field("TryExec"));
    entry.runsInTerminal = field("Terminal") == "true";
    const auto only
        = fields.contains("OnlyShowIn") ? std::optional(field("OnlyShowIn")) : std::optional<std::string_view>();
    entry.isHidden = field("NoDisplay") == "true" || !isForDesktop(only, field("NotShowIn"), reader.desktops);
    if (entry.name.empty())
        return std::nullopt;
    return entry;
}

}
