#include "base/PropertyList.h"

#include "base/BinaryPropertyList.h"

#include <glib.h>
#include <locale.h>
#include <plist/plist.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace {

/// Seconds from 1970 to 2001, where property-list dates begin.
constexpr double dateEpoch = 978307200;

/// The library reads numbers in the thread's locale, which may want a comma in them; files have a point.
class PlainNumbers {
public:
    PlainNumbers()
        : before_(::uselocale(plain()))
    {
    }
    ~PlainNumbers() { ::uselocale(before_); }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    static locale_t plain()
    {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t before_;
};

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
struct TextDeleter {
    void operator()(char* text) const { std::free(text); }
};
using Node = std::unique_ptr<void, NodeDeleter>;
using Text = std::unique_ptr<char, TextDeleter>;

Value valueOf(plist_t node);
plist_t nodeOf(const Value& value);

std::string binaryOf(plist_t node)
{
    char* raw = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(node, &raw, &length);
    const Text bytes(raw);
    return { bytes.get(), length };
}

/// The value, when it stands for just this node; else the node itself.
Value exactly(plist_t node, const Value& value)
{
    std::string bytes = binaryOf(node);
    const Node same(nodeOf(value));
    if (binaryOf(same.get()) == bytes)
        return value;
    return Value::Opaque { std::move(bytes) };
}

Value arrayOf(plist_t node)
{
    Value::Array array;
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i)
        array.push_back(valueOf(plist_array_get_item(node, i)));
    return array;
}

Value dictionaryOf(plist_t node)
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
        dictionary.set(key.get(), valueOf(entry));
    }
}

Value numberOf(plist_t node)
{
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    // From 2^63 on the number is another kind of node, which the library can't be asked to make.
    return exactly(node, static_cast<std::int64_t>(number));
}

Value dataOf(plist_t node)
{
    char* raw = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &raw, &length);
    const Text bytes(raw);
    const auto* first = reinterpret_cast<const std::byte*>(raw);
    return Value::Data(first, first + length);
}

Value dateOf(plist_t node)
{
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return exactly(node, Value::Date { dateEpoch + seconds + microseconds / 1e6 });
}

/// The library takes seconds in 32 bits, from 1933 to 2069.
plist_t dateNode(Value::Date date)
{
    using Seconds = std::numeric_limits<std::int32_t>;
    double whole = 0;
    const double part = std::modf(date.secondsSince1970 - dateEpoch, &whole);
    const double within = std::fmin(std::fmax(whole, Seconds::min()), Seconds::max());
    return plist_new_date(static_cast<std::int32_t>(within), static_cast<std::int32_t>(std::lround(part * 1e6)));
}

plist_t opaqueNode(const Value::Opaque& opaque)
{
    plist_t node = nullptr;
    plist_from_bin(opaque.bytes.data(), static_cast<std::uint32_t>(opaque.bytes.size()), &node);
    return node;
}

Value valueOf(plist_t node)
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
        return Value::Opaque { binaryOf(node) };
    }
}

bool isSoundText(std::string_view text)
{
    return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr);
}

/// Whether it can be written again: binary files may hold text that is none.
bool isSound(const Value& value)
{
    if (const auto* opaque = value.opaque())
        return BinaryPropertyList::isWithinCalendar(opaque->bytes);
    if (const auto* text = value.string())
        return isSoundText(*text);
    if (const auto* array = value.array())
        return std::ranges::all_of(*array, isSound);
    if (const auto* dictionary = value.dictionary())
        return std::ranges::all_of(
            *dictionary, [](const auto& entry) { return isSoundText(entry.first) && isSound(entry.second); });
    return true;
}

plist_t nodeOf(const Value& value)
{
    if (const auto flag = value.boolean())
        return plist_new_bool(*flag ? 1 : 0);
    if (const auto* text = value.string())
        return plist_new_string(text->c_str());
    if (const auto* bytes = value.data())
        return plist_new_data(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (const auto date = value.date())
        return dateNode(*date);
    if (const auto* opaque = value.opaque())
        return opaqueNode(*opaque);
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
    // No text has a zero in it. The library stops the program at one, or loses what follows.
    if (isBinary(bytes) ? BinaryPropertyList::hasTextWithZero(bytes) : bytes.find('\0') != bytes.npos)
        return std::nullopt;
    const PlainNumbers plain;
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &raw);
    const Node node(raw);
    if (!node)
        return std::nullopt;
    auto value = valueOf(node.get());
    return isSound(value) ? std::optional(std::move(value)) : std::nullopt;
}

bool PropertyList::isBinary(std::string_view bytes)
{
    return bytes.starts_with("bplist");
}

std::string PropertyList::xml(const Value& value)
{
    const PlainNumbers plain;
    const Node node(nodeOf(value));
    char* raw = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node.get(), &raw, &length);
    const Text text(raw);
    return { text.get(), length };
}

std::string PropertyList::binary(const Value& value)
{
    const Node node(nodeOf(value));
    return binaryOf(node.get());
}
