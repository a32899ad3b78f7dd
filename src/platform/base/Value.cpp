#include "base/Value.h"

#include "base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace {

template <class T>
const T* shared(const auto& content)
{
    const auto* pointer = std::get_if<std::shared_ptr<const T>>(&content);
    return pointer ? pointer->get() : nullptr;
}

}

Value::Value(bool value)
    : content_(value)
{
}

Value::Value(double value)
    : content_(value)
{
}

Value::Value(std::string value)
    : content_(std::make_shared<const std::string>(std::move(value)))
{
}

Value::Value(std::string_view value)
    : Value(std::string(value))
{
}

Value::Value(const char* value)
    : Value(std::string(value))
{
}

Value::Value(Data value)
    : content_(std::make_shared<const Data>(std::move(value)))
{
}

Value::Value(Date value)
    : content_(value)
{
}

Value::Value(Opaque value)
    : content_(std::make_shared<const Opaque>(std::move(value)))
{
}

Value::Value(Array value)
    : content_(std::make_shared<const Array>(std::move(value)))
{
}

Value::Value(Dictionary value)
    : content_(std::make_shared<const Dictionary>(std::move(value)))
{
}

std::optional<bool> Value::boolean() const
{
    if (const auto* value = std::get_if<bool>(&content_))
        return *value;
    return std::nullopt;
}

std::optional<std::int64_t> Value::integer() const
{
    if (const auto* value = std::get_if<std::int64_t>(&content_))
        return *value;
    const auto* real = std::get_if<double>(&content_);
    if (!real || std::trunc(*real) != *real || std::abs(*real) > 9.0e18)
        return std::nullopt;
    return static_cast<std::int64_t>(*real);
}

std::optional<double> Value::number() const
{
    if (const auto* value = std::get_if<double>(&content_))
        return *value;
    if (const auto* value = std::get_if<std::int64_t>(&content_))
        return static_cast<double>(*value);
    return std::nullopt;
}

const std::string* Value::string() const
{
    return shared<std::string>(content_);
}

const Value::Data* Value::data() const
{
    return shared<Data>(content_);
}

std::optional<Value::Date> Value::date() const
{
    if (const auto* value = std::get_if<Date>(&content_))
        return *value;
    return std::nullopt;
}

const Value::Opaque* Value::opaque() const
{
    return shared<Opaque>(content_);
}

const Value::Array* Value::array() const
{
    return shared<Array>(content_);
}

const Value::Dictionary* Value::dictionary() const
{
    return shared<Dictionary>(content_);
}

const Value* Value::find(std::string_view key) const
{
    const Dictionary* entries = dictionary();
    return entries ? entries->find(key) : nullptr;
}

bool Value::operator==(const Value& other) const
{
    if (content_.index() != other.content_.index())
        return false;
    const auto same = [](const auto& a, const auto& b) {
        if constexpr (!std::is_same_v<decltype(a), decltype(b)>)
            return false;
        else if constexpr (requires { *a; })
            return a == b || *a == *b;
        else
            return a == b;
    };
    return std::visit(same, content_, other.content_);
}

Value::Dictionary::Dictionary(std::initializer_list<Entry> entries)
{
    entries_.reserve(entries.size());
    for (const auto& [key, value] : entries)
        set(key, value);
}

namespace {

auto position(auto& entries, std::string_view key)
{
    return std::lower_bound(entries.begin(), entries.end(), key,
        [](const auto& entry, std::string_view wanted) { return entry.first < wanted; });
}

}

const Value* Value::Dictionary::find(std::string_view key) const
{
    const auto place = position(entries_, key);
    return place != entries_.end() && place->first == key ? &place->second : nullptr;
}

void Value::Dictionary::set(std::string key, Value value)
{
    const auto place = position(entries_, key);
    if (place != entries_.end() && place->first == key)
        place->second = std::move(value);
    else
        entries_.emplace(place, std::move(key), std::move(value));
}

void Value::Dictionary::erase(std::string_view key)
{
    const auto place = position(entries_, key);
    if (place != entries_.end() && place->first == key)
        entries_.erase(place);
}

Value CGRectCreateDictionaryRepresentation(const CGRect& rect)
{
    return Value::Dictionary { { "Height", rect.height }, { "Width", rect.width }, { "X", rect.x }, { "Y", rect.y } };
}

std::optional<CGRect> CGRectMakeWithDictionaryRepresentation(const Value& value)
{
    CGRect rect;
    const std::pair<const char*, double*> parts[]
        = { { "X", &rect.x }, { "Y", &rect.y }, { "Width", &rect.width }, { "Height", &rect.height } };
    for (const auto& [key, part] : parts) {
        const Value* entry = value.find(key);
        const auto number = entry ? entry->number() : std::nullopt;
        if (!number)
            return std::nullopt;
        *part = *number;
    }
    return rect;
}

namespace {

std::string joined(const auto& range, const auto& text, const char* open, const char* close)
{
    std::string result = open;
    for (const auto& element : range) {
        if (result.size() > 1)
            result += ", ";
        result += text(element);
    }
    return result + close;
}

std::string shortest(double number)
{
    std::array<char, 32> text {};
    const auto end = std::to_chars(text.begin(), text.end(), number, std::chars_format::general, 15).ptr;
    return { text.begin(), end };
}

}

std::string description(const Value& value)
{
    if (const auto flag = value.boolean())
        return *flag ? "true" : "false";
    if (const auto number = value.integer())
        return std::to_string(*number);
    if (const auto number = value.number())
        return shortest(*number);
    if (const auto* text = value.string())
        return *text;
    if (const auto date = value.date())
        return "date " + shortest(date->secondsSince1970);
    if (const auto* bytes = value.data())
        return std::to_string(bytes->size()) + " bytes";
    if (value.opaque())
        return "opaque";
    if (const auto* array = value.array())
        return joined(
            *array, [](const Value& element) { return description(element); }, "[", "]");
    return joined(
        *value.dictionary(), [](const auto& entry) { return entry.first + ": " + description(entry.second); }, "[",
        "]");
}
