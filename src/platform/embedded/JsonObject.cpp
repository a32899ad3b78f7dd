#include "embedded/JsonObject.h"

#include <QJsonArray>

#include <algorithm>

namespace embedded {

JsonObject::JsonObject(const JsonLines& lines, QJsonObject object, std::string path, std::string label)
    : lines_(lines)
    , object_(std::move(object))
    , path_(std::move(path))
    , label_(std::move(label))
{
}

JsonObject JsonObject::object(const char* key)
{
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isObject())
        mustBe(key, "an object");
    return JsonObject(lines_, value.toObject(), pathOf(key), label_.empty() ? key : label_ + ": " + key);
}

std::vector<JsonObject> JsonObject::objects(const char* key, const std::string& kind)
{
    std::vector<JsonObject> objects;
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isArray())
        mustBe(key, "an array");
    elements(value, [&](const QJsonValue& element, const std::string& index) {
        const std::string place = std::string(key) + "/" + index;
        if (!element.isObject())
            mustBe(place, "an object");
        objects.emplace_back(lines_, element.toObject(), pathOf(place), kind + " at index " + index);
    });
    return objects;
}

void JsonObject::done() const
{
    for (const QString& key : object_.keys()) {
        const std::string name = key.toStdString();
        if (std::find(asked_.begin(), asked_.end(), name) == asked_.end())
            fail(name, "\"" + name + "\" is no key of this");
    }
}

void JsonObject::fail(const std::string& key, const std::string& reason) const
{
    throw ScenarioError { lines_.lineOf(key.empty() ? path_ : pathOf(key)),
        label_.empty() ? reason : label_ + ": " + reason };
}

QJsonValue JsonObject::take(const char* key)
{
    asked_.emplace_back(key);
    return object_.value(QLatin1String(key));
}

std::string JsonObject::pathOf(const std::string& key) const
{
    return path_.empty() ? key : path_ + "/" + key;
}

void JsonObject::mustBe(const std::string& key, const char* what) const
{
    fail(key, "\"" + key + "\" must be " + what);
}

std::int64_t JsonObject::integer(const QJsonValue& value, const std::string& key) const
{
    if (!value.isDouble() || static_cast<double>(value.toInteger()) != value.toDouble())
        mustBe(key, "a whole number");
    return value.toInteger();
}

std::vector<double> JsonObject::numbers(const QJsonValue& value, const std::string& key, std::size_t count) const
{
    std::vector<double> numbers;
    convert(value, key, numbers);
    if (numbers.size() != count)
        mustBe(key, count == 4 ? "an array of x, y, width and height" : "an array of width and height");
    return numbers;
}

void JsonObject::convert(const QJsonValue& value, const std::string& key, bool& out) const
{
    if (!value.isBool())
        mustBe(key, "true or false");
    out = value.toBool();
}

void JsonObject::convert(const QJsonValue& value, const std::string& key, double& out) const
{
    if (!value.isDouble())
        mustBe(key, "a number");
    out = value.toDouble();
}

void JsonObject::convert(const QJsonValue& value, const std::string& key, std::string& out) const
{
    if (!value.isString())
        mustBe(key, "text");
    out = value.toString().toStdString();
}

void JsonObject::convert(const QJsonValue& value, const std::string& key, CGRect& out) const
{
    const auto parts = numbers(value, key, 4);
    out = { parts[0], parts[1], parts[2], parts[3] };
    if (out.width <= 0 || out.height <= 0)
        fail(key, "\"" + key + "\" must have a width and a height above 0");
}

void JsonObject::convert(const QJsonValue& value, const std::string& key, CGSize& out) const
{
    const auto parts = numbers(value, key, 2);
    out = { parts[0], parts[1] };
}

void JsonObject::elements(
    const QJsonValue& array, const std::function<void(const QJsonValue&, const std::string& index)>& each)
{
    int index = 0;
    for (const QJsonValue element : array.toArray())
        each(element, std::to_string(index++));
}

void JsonObject::members(
    const QJsonValue& value, const std::function<void(const std::string& name, const QJsonValue&)>& each)
{
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        each(member.key().toStdString(), member.value());
}

}
