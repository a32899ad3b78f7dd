#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

struct CGRect;

/// A property-list value: boolean, integer, double, string, data, date, array or dictionary, or something else that a
/// file held, kept to be written back. Immutable and shared, so a copy costs a reference count and may be read from any
/// thread. Access is checked: the wrong type and a missing entry
/// give the same answer, an empty optional.
class Value {
public:
    using Array = std::vector<Value>;
    using Data = std::vector<std::byte>;
    struct Date {
        double secondsSince1970 = 0;
        bool operator==(const Date&) const = default;
    };
    /// What none of the other kinds holds exactly, in the bytes that PropertyList knows it by.
    struct Opaque {
        std::string bytes;
        bool operator==(const Opaque&) const = default;
    };
    class Dictionary;

    Value(bool value);
    Value(double value);
    template <class Integer>
    requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>) Value(Integer value)
        : content_(static_cast<std::int64_t>(value))
    {
    }
    Value(std::string value);
    Value(std::string_view value);
    Value(const char* value);
    Value(Data value);
    Value(Date value);
    Value(Opaque value);
    Value(Array value);
    Value(Dictionary value);

    std::optional<bool> boolean() const;
    /// An integer, or a double without a fraction.
    std::optional<std::int64_t> integer() const;
    /// An integer that fits in `Integer`.
    template <class Integer>
    std::optional<Integer> integer() const
    {
        const auto wide = integer();
        if (!wide || !std::in_range<Integer>(*wide))
            return std::nullopt;
        return static_cast<Integer>(*wide);
    }
    /// Whether it is a double, kept and written as one even without a fraction.
    bool isReal() const { return std::holds_alternative<double>(content_); }
    /// An integer or a double.
    std::optional<double> number() const;
    const std::string* string() const;
    const Data* data() const;
    std::optional<Date> date() const;
    const Opaque* opaque() const;
    const Array* array() const;
    const Dictionary* dictionary() const;

    /// The entry under `key`; null when this is no dictionary or holds no such entry.
    const Value* find(std::string_view key) const;

    bool operator==(const Value& other) const;

private:
    std::variant<bool, std::int64_t, double, Date, std::shared_ptr<const std::string>, std::shared_ptr<const Data>,
        std::shared_ptr<const Opaque>, std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>>
        content_;
};

/// Entries sorted by key, each key once.
class Value::Dictionary {
public:
    using Entry = std::pair<std::string, Value>;

    Dictionary() = default;
    /// Of entries with the same key the last one stays.
    Dictionary(std::initializer_list<Entry> entries);

    const Value* find(std::string_view key) const;
    void set(std::string key, Value value);
    void erase(std::string_view key);
    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }
    bool operator==(const Dictionary&) const = default;

private:
    std::vector<Entry> entries_;
};

/// The dictionary form of a rectangle: "X", "Y", "Width", "Height".
Value CGRectCreateDictionaryRepresentation(const CGRect& rect);
std::optional<CGRect> CGRectMakeWithDictionaryRepresentation(const Value& value);

/// A one-line printed form, for log messages.
std::string description(const Value& value);
