#include "freedesktop/PanelStore.h"

#include "base/PreferenceFile.h"
#include "freedesktop/SessionBus.h"

#include <gio/gio.h>

#include <utility>

namespace freedesktop {
namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
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

    void finish() override { g_settings_sync(); }

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
        , bus_(hasSessionBus() ? g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr) : nullptr)
    {
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
    /// Milliseconds. After one call without an answer none is made any more.
    static constexpr int patience = 700;

    Owned<GVariant> call(const char* method, GVariant* arguments)
    {
        const Owned<GVariant> owned(g_variant_ref_sink(arguments));
        if (!bus_ || isSilent_)
            return nullptr;
        GError* error = nullptr;
        Owned<GVariant> answer(g_dbus_connection_call_sync(bus_.get(), name, "/org/xfce/Xfconf", name, method,
            owned.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, patience, nullptr, &error));
        isSilent_ = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
        g_clear_error(&error);
        return answer;
    }

    std::string channel_;
    std::string base_;
    Owned<GDBusConnection> bus_;
    bool isSilent_ = false;
    std::function<void()> changed_;
    guint subscription_ = 0;
};

class FileKeys final : public PanelStore {
public:
    FileKeys(std::string file, std::string group)
        : file_(std::move(file))
        , group_(std::move(group))
    {
    }

    std::optional<std::string> own(const std::string& key) override
    {
        const auto file = load();
        const Owned<char> value(g_key_file_get_value(file.get(), group_.c_str(), key.c_str(), nullptr));
        return value ? std::optional<std::string>(value.get()) : std::nullopt;
    }

    bool set(const std::string& key, const std::optional<std::string>& value) override
    {
        const auto file = load();
        if (value)
            g_key_file_set_value(file.get(), group_.c_str(), key.c_str(), value->c_str());
        else
            g_key_file_remove_key(file.get(), group_.c_str(), key.c_str(), nullptr);
        gsize length = 0;
        const Owned<char> bytes(g_key_file_to_data(file.get(), &length, nullptr));
        return replaceFile(file_, { bytes.get(), length }, 0644).empty();
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
    Owned<GKeyFile> load() const
    {
        Owned<GKeyFile> file(g_key_file_new());
        g_key_file_load_from_file(file.get(), file_.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
        return file;
    }

    std::string file_;
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
