#include "freedesktop/Autostart.h"

#include "base/PreferenceFile.h"
#include "freedesktop/UserFolders.h"

#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

namespace freedesktop {
namespace {

constexpr const char* group = "Desktop Entry";

struct KeyFileDeleter {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

std::string fileOf(const std::string& identifier)
{
    return configFolder() + "/autostart/" + identifier + ".desktop";
}

/// One argument of a command line, so that nothing in it means anything to whoever runs it.
std::string quoted(const std::string& argument)
{
    std::string text = "\"";
    for (const char character : argument) {
        if (std::strchr("\"`$\\", character))
            text += '\\';
        if (character == '%')
            text += '%';
        text += character;
    }
    return text + '"';
}

std::string commandLine(const std::vector<std::string>& command)
{
    std::string line;
    for (const std::string& argument : command)
        line += (line.empty() ? "" : " ") + quoted(argument);
    return line;
}

std::string withoutFieldCodes(std::string argument)
{
    for (auto place = argument.find('%'); place != argument.npos; place = argument.find('%', place + 1))
        argument.erase(place, 1);
    return argument;
}

std::vector<std::string> parsed(const char* line)
{
    char** words = nullptr;
    std::vector<std::string> command;
    if (!line || !g_shell_parse_argv(line, nullptr, &words, nullptr))
        return command;
    for (char** word = words; *word; ++word)
        command.push_back(withoutFieldCodes(*word));
    g_strfreev(words);
    return command;
}

std::string text(GKeyFile* file, const char* key)
{
    const std::unique_ptr<char, decltype(&g_free)> value(g_key_file_get_string(file, group, key, nullptr), &g_free);
    return value ? value.get() : "";
}

bool isOff(GKeyFile* file)
{
    constexpr const char* enabled = "X-GNOME-Autostart-enabled";
    const bool isDisabled
        = g_key_file_has_key(file, group, enabled, nullptr) && !g_key_file_get_boolean(file, group, enabled, nullptr);
    return isDisabled || g_key_file_get_boolean(file, group, "Hidden", nullptr);
}

}

std::optional<Autostart::Entry> Autostart::read(const std::string& identifier)
{
    const KeyFile file(g_key_file_new());
    if (!g_key_file_load_from_file(file.get(), fileOf(identifier).c_str(), G_KEY_FILE_NONE, nullptr))
        return std::nullopt;
    return Entry { text(file.get(), "Name"), text(file.get(), "Comment"), parsed(text(file.get(), "Exec").c_str()),
        !isOff(file.get()) };
}

std::string Autostart::write(const std::string& identifier, const Entry& entry)
{
    const KeyFile file(g_key_file_new());
    const auto set = [&](const char* key, const std::string& value) {
        g_key_file_set_string(file.get(), group, key, value.c_str());
    };
    set("Type", "Application");
    set("Name", entry.name);
    set("Comment", entry.comment);
    set("Exec", commandLine(entry.command));
    set("NoDisplay", "true");
    const std::string path = fileOf(identifier);
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    gsize length = 0;
    const std::unique_ptr<char, decltype(&g_free)> bytes(g_key_file_to_data(file.get(), &length, nullptr), &g_free);
    return replaceFile(path, { bytes.get(), length }, 0644);
}

std::string Autostart::remove(const std::string& identifier)
{
    const std::string path = fileOf(identifier);
    return ::unlink(path.c_str()) == 0 ? std::string() : path + ": " + std::strerror(errno);
}

}
