#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace freedesktop {

/// Where a panel keeps its own settings, each under a key of the panel's, as a text that gives the same value back. One
/// thread.
class PanelStore {
public:
    virtual ~PanelStore() = default;

    /// What was set; absent where the panel's default holds, and where nobody answers.
    virtual std::optional<std::string> own(const std::string& key) = 0;
    /// What is in force; absent when nobody knows.
    virtual std::optional<std::string> inForce(const std::string& key) { return own(key); }
    /// Whether all that was asked so far was answered.
    virtual bool answers() const { return true; }
    /// Absent takes what was set away. False when it can't be written.
    virtual bool set(const std::string& key, const std::optional<std::string>& value) = 0;
    /// Returns when what was set is kept; false when that can't be known.
    virtual bool finish() { return true; }
    /// `changed` runs on the main thread whenever a setting may have changed, as long as the store lives.
    virtual void follow(std::function<void()> changed) = 0;
};

/// Settings of a schema at a path; null where the schema isn't installed.
std::unique_ptr<PanelStore> settingsOfSchema(const std::string& schema, const std::string& path);
/// Properties below a base of an Xfconf channel, in the type-annotated text form of GVariant.
std::unique_ptr<PanelStore> xfconfProperties(const std::string& channel, const std::string& base);
/// A group of a file of keys and values, of which only the lines that are set ever change.
std::unique_ptr<PanelStore> keysOfFile(const std::string& file, const std::string& group);

}
