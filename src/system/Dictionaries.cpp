#include "system/Dictionaries.h"

#include <algorithm>

const Value::Array& dictionaries(const std::optional<Value>& value)
{
    static const Value::Array none;
    const Value::Array* array = value ? value->array() : nullptr;
    return array && std::ranges::all_of(*array, &Value::dictionary) ? *array : none;
}
