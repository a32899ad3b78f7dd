#include "freedesktop/PanelStore.h"

#include "base/PreferenceFile.h"
#include "freedesktop/ProcessFiles.h"
#include "freedesktop/SessionBus.h"

#include <gio/gio.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <iterator>
#include <sstream>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace freedesktop {
namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
    void operator()(char* text) const { g_free(text); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

std::string printed(GVariant* value, bool annotated)
{
    const Owned<char> text(g_variant_print(value, annotated));
    return text.get();
}

using Clock = std::chrono::steady_clock;
/// For an answer of a settings service.
constexpr std::chrono::milliseconds patience { 450 };

void runBlock(gpointer block)
{
    (*static_cast<std::function<void()>*>(block))();
}

class SchemaSettings final : public PanelStore {
public:
    SchemaSettings(GSettingsSchema* schema, const std::string& path)
        : schema_(schema)
        , settings_(g_settings_new_full(schema, nullptr, path.c_str()))
    {
    }

    std::optional<std::string> own(const std::string& key) override
    {
        const Owned<GVariant> value(g_settings_get_user_value(settings_.get(), key.c_str()));
        return value ? std::optional(printed(value.get(), false)) : std::nullopt;
    }

    std::optional<std::string> inForce(const std::string& key) override
    {
        const Owned<GVariant> value(g_settings_get_value(settings_.get(), key.c_str()));
        return printed(value.get(), false);
    }

    bool set(const std::string& key, const std::optional<std::string>& value) override
    {
        if (!value) {
            g_settings_reset(settings_.get(), key.c_str());
            return true;
        }
        const Owned<GVariant> present(g_settings_get_value(settings_.get(), key.c_str()));
        GVariant* parsed
            = g_variant_parse(g_variant_get_type(present.get()), value->c_str(), nullptr, nullptr, nullptr);
        return parsed && g_settings_set_value(settings_.get(), key.c_str(), parsed);
    }

    bool finish() override
    {
        // It waits for a service, and without end for one that doesn't answer.
        const auto kept = std::make_shared<std::promise<void>>();
        auto wait = kept->get_future();
        std::thread([kept] {
            g_settings_sync();
            kept->set_value();
        }).detach();
        return wait.wait_for(patience) == std::future_status::ready;
    }

    void follow(std::function<void()> changed) override
    {
        changed_ = std::move(changed);
        g_signal_connect_swapped(settings_.get(), "changed", G_CALLBACK(runBlock), &changed_);
    }

private:
    Owned<GSettingsSchema> schema_;
    std::function<void()> changed_;
    Owned<GSettings> settings_;
};

class XfconfProperties final : public PanelStore {
public:
    XfconfProperties(std::string channel, std::string base)
        : channel_(std::move(channel))
        , base_(std::move(base))
        , bus_(isSilent() ? nullptr : sessionBus(static_cast<int>(patience.count())))
    {
        if (!bus_)
            fall();
    }

    ~XfconfProperties() override
    {
        if (subscription_ != 0)
            g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
    }

    std::optional<std::string> own(const std::string& key) override
    {
        const auto answer = call("GetProperty", g_variant_new("(ss)", channel_.c_str(), (base_ + key).c_str()));
        if (!answer)
            return std::nullopt;
        const Owned<GVariant> boxed(g_variant_get_child_value(answer.get(), 0));
        const Owned<GVariant> value(g_variant_get_variant(boxed.get()));
        return printed(value.get(), true);
    }

    bool answers() const override { return !hasFailed_; }

    bool set(const std::string& key, const std::optional<std::string>& value) override
    {
        const std::string property = base_ + key;
        if (!value)
            return call("ResetProperty", g_variant_new("(ssb)", channel_.c_str(), property.c_str(), FALSE)) != nullptr;
        GVariant* parsed = g_variant_parse(nullptr, value->c_str(), nullptr, nullptr, nullptr);
        return parsed
            && call("SetProperty", g_variant_new("(ssv)", channel_.c_str(), property.c_str(), parsed)) != nullptr;
    }

    void follow(std::function<void()> changed) override
    {
        changed_ = std::move(changed);
        if (!bus_)
            return;
        const auto told = [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                              gpointer block) { runBlock(block); };
        subscription_ = g_dbus_connection_signal_subscribe(bus_.get(), name, name, nullptr, nullptr, channel_.c_str(),
            G_DBUS_SIGNAL_FLAGS_NONE, told, &changed_, nullptr);
    }

private:
    static constexpr const char* name = "org.xfce.Xfconf";

    /// After one call without an answer nobody makes one for a while, so that a service that hangs holds nobody up for
    /// long.
    static bool isSilent() { return Clock::now() < silentUntil; }

    void fall()
    {
        hasFailed_ = true;
        silentUntil = Clock::now() + std::chrono::seconds(30);
    }

    Owned<GVariant> call(const char* method, GVariant* arguments)
    {
        const Owned<GVariant> owned(g_variant_ref_sink(arguments));
        if (hasFailed_ || isSilent()) {
            hasFailed_ = true;
            return nullptr;
        }
        GError* error = nullptr;
        Owned<GVariant> answer(g_dbus_connection_call_sync(bus_.get(), name, "/org/xfce/Xfconf", name, method,
            owned.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, static_cast<int>(patience.count()), nullptr, &error));
        // An error of its own is an answer: there is no such property.
        char* told = error ? g_dbus_error_get_remote_error(error) : nullptr;
        if (error && !(told && std::string_view(told).starts_with(name)))
            fall();
        g_free(told);
        g_clear_error(&error);
        return answer;
    }

    static inline Clock::time_point silentUntil;

    std::string channel_;
    std::string base_;
    Owned<GDBusConnection> bus_;
    bool hasFailed_ = false;
    std::function<void()> changed_;
    guint subscription_ = 0;
};

using Lines = std::vector<std::string>;

/// The line of a key in a group.
template <class Range>
auto findLine(Range& lines, const std::string& group, const std::string& key)
{
    bool isInGroup = false;
    return std::ranges::find_if(lines, [&](const std::string& line) {
        if (line.starts_with('['))
            isInGroup = line == group;
        const auto sign = line.find('=');
        return isInGroup && sign != line.npos && line.substr(0, line.find_last_not_of(" \t", sign - 1) + 1) == key;
    });
}

class FileKeys final : public PanelStore {
public:
    FileKeys(std::string file, std::string group)
        : file_(std::move(file))
        , group_('[' + std::move(group) + ']')
    {
    }

    std::optional<std::string> own(const std::string& key) override
    {
        const Lines lines = read();
        const auto line = findLine(lines, group_, key);
        if (line == lines.end())
            return std::nullopt;
        const auto start = line->find_first_not_of(" \t", line->find('=') + 1);
        return start == line->npos ? "" : line->substr(start);
    }

    bool set(const std::string& key, const std::optional<std::string>& value) override
    {
        Lines lines = read();
        auto group = std::ranges::find(lines, group_);
        if (value && group == lines.end())
            group = lines.insert(lines.end(), group_);
        const auto line = findLine(lines, group_, key);
        if (value && line != lines.end())
            *line = key + '=' + *value;
        else if (value)
            lines.insert(std::next(group), key + '=' + *value);
        else if (line != lines.end())
            lines.erase(line);
        std::string bytes;
        for (const std::string& each : lines)
            bytes += each + '\n';
        return replaceFile(file_, bytes, 0644).empty();
    }

    void follow(std::function<void()> changed) override
    {
        changed_ = std::move(changed);
        const Owned<GFile> file(g_file_new_for_path(file_.c_str()));
        monitor_.reset(g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
        if (monitor_)
            g_signal_connect_swapped(monitor_.get(), "changed", G_CALLBACK(runBlock), &changed_);
    }

private:
    Lines read() const
    {
        Lines lines;
        std::istringstream file(contentsOf(file_));
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    std::string file_;
    /// In its brackets.
    std::string group_;
    std::function<void()> changed_;
    Owned<GFileMonitor> monitor_;
};

}

std::unique_ptr<PanelStore> settingsOfSchema(const std::string& schema, const std::string& path)
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    GSettingsSchema* found = source ? g_settings_schema_source_lookup(source, schema.c_str(), TRUE) : nullptr;
    return found ? std::make_unique<SchemaSettings>(found, path) : nullptr;
}

std::unique_ptr<PanelStore> xfconfProperties(const std::string& channel, const std::string& base)
{
    return std::make_unique<XfconfProperties>(channel, base);
}

std::unique_ptr<PanelStore> keysOfFile(const std::string& file, const std::string& group)
{
    return std::make_unique<FileKeys>(file, group);
}

}
