#include "base/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

namespace {

/// Seconds from 1970 to 2001, where property-list dates begin.
constexpr double dateEpoch = 978307200;

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
struct TextDeleter {
    void operator()(char* text) const { std::free(text); }
};
using Node = std::unique_ptr<void, NodeDeleter>;
using Text = std::unique_ptr<char, TextDeleter>;

std::optional<Value> valueOf(plist_t node);

std::optional<Value> arrayOf(plist_t node)
{
    Value::Array array;
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        auto element = valueOf(plist_array_get_item(node, i));
        if (!element)
            return std::nullopt;
        array.push_back(*std::move(element));
    }
    return array;
}

std::optional<Value> dictionaryOf(plist_t node)
{
    Value::Dictionary dictionary;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(node, &rawIterator);
    const std::unique_ptr<void, decltype(&std::free)> iterator(rawIterator, &std::free);
    while (true) {
        char* rawKey = nullptr;
        plist_t entry = nullptr;
        plist_dict_next_item(node, iterator.get(), &rawKey, &entry);
        const Text key(rawKey);
        if (!entry)
            return dictionary;
        auto value = valueOf(entry);
        if (!value)
            return std::nullopt;
        dictionary.set(key.get(), *std::move(value));
    }
}

std::optional<Value> numberOf(plist_t node)
{
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    return static_cast<std::int64_t>(number);
}

std::optional<Value> dataOf(plist_t node)
{
    char* raw = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &raw, &length);
    const Text bytes(raw);
    const auto* first = reinterpret_cast<const std::byte*>(raw);
    return Value::Data(first, first + length);
}

std::optional<Value> dateOf(plist_t node)
{
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return Value::Date { dateEpoch + seconds + microseconds / 1e6 };
}

/// Absent for a kind of node that no property-list value has.
std::optional<Value> valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return flag != 0;
    }
    case PLIST_UINT:
        return numberOf(node);
    case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        return number;
    }
    case PLIST_STRING: {
        char* raw = nullptr;
        plist_get_string_val(node, &raw);
        const Text text(raw);
        return text.get();
    }
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_DATE:
        return dateOf(node);
    default:
        return std::nullopt;
    }
}

plist_t nodeOf(const Value& value)
{
    if (const auto flag = value.boolean())
        return plist_new_bool(*flag ? 1 : 0);
    if (const auto* text = value.string())
        return plist_new_string(text->c_str());
    if (const auto* bytes = value.data())
        return plist_new_data(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (const auto date = value.date()) {
        const double seconds = date->secondsSince1970 - dateEpoch;
        return plist_new_date(static_cast<std::int32_t>(seconds), 0);
    }
    if (const auto* array = value.array()) {
        plist_t node = plist_new_array();
        for (const Value& element : *array)
            plist_array_append_item(node, nodeOf(element));
        return node;
    }
    if (const auto* dictionary = value.dictionary()) {
        plist_t node = plist_new_dict();
        for (const auto& [key, entry] : *dictionary)
            plist_dict_set_item(node, key.c_str(), nodeOf(entry));
        return node;
    }
    if (value.isReal())
        return plist_new_real(*value.number());
    return plist_new_uint(static_cast<std::uint64_t>(*value.integer()));
}

}

std::optional<Value> PropertyList::parse(std::string_view bytes)
{
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &raw);
    const Node node(raw);
    if (!node)
        return std::nullopt;
    return valueOf(node.get());
}

std::string PropertyList::xml(const Value& value)
{
    const Node node(nodeOf(value));
    char* raw = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node.get(), &raw, &length);
    const Text text(raw);
    return { text.get(), length };
}
