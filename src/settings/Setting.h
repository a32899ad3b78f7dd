#pragma once

#include "base/Value.h"
#include "foundation/NSUserDefaults.h"
#include "settings/Choice.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Settings {

/// Posted on the default notification centre after each write of a setting, also of the value it had, and after another
/// program has changed the store.
inline constexpr const char* didChange = "VantrySettingsDidChange";

/// The one way in which a setting is written.
void write(const Value& value, std::string_view key);

using Strings = std::vector<std::string>;
using StringMap = std::map<std::string, std::string, std::less<>>;

/// How settings of one type lie in the defaults store. `Fallback` is what stands in for a value that is missing or of
/// no use.
template <class T>
struct Stored;

template <>
struct Stored<bool> {
    using Fallback = bool;
    static bool read(const NSUserDefaults& store, std::string_view key, bool fallback)
    {
        return store.objectForKey(key) ? store.boolForKey(key) : fallback;
    }
    static Value value(bool value) { return value; }
};

template <ChoiceEnum Enum>
struct Stored<Enum> {
    using Fallback = Enum;
    static Enum read(const NSUserDefaults& store, std::string_view key, Enum fallback)
    {
        return fromRawValue<Enum>(store.stringForKey(key).value_or("")).value_or(fallback);
    }
    static Value value(Enum value) { return rawValue(value); }
};

template <>
struct Stored<std::string> {
    using Fallback = std::string_view;
    static std::string read(const NSUserDefaults& store, std::string_view key, std::string_view fallback)
    {
        return store.stringForKey(key).value_or(std::string(fallback));
    }
    static Value value(const std::string& value) { return value; }
};

struct Empty { };

template <>
struct Stored<Strings> {
    using Fallback = Empty;
    static Strings read(const NSUserDefaults& store, std::string_view key, Empty)
    {
        return store.stringArrayForKey(key).value_or(Strings());
    }
    static Value value(const Strings& strings) { return Value::Array(strings.begin(), strings.end()); }
};

template <>
struct Stored<StringMap> {
    using Fallback = Empty;
    static StringMap read(const NSUserDefaults& store, std::string_view key, Empty);
    static Value value(const StringMap& map);
};

/// One choice of the user, kept under a key of the defaults store. Calling it reads the store afresh; nothing is
/// cached. Main thread.
template <class T>
class Setting {
public:
    using Type = T;
    using Fallback = typename Stored<T>::Fallback;

    explicit constexpr Setting(std::string_view key, Fallback fallback = {})
        : key_(key)
        , fallback_(fallback)
    {
    }

    T operator()() const { return Stored<T>::read(NSUserDefaults::standard(), key_, fallback_); }
    void set(const T& value) const { write(Stored<T>::value(value), key_); }

private:
    std::string_view key_;
    Fallback fallback_;
};

}
