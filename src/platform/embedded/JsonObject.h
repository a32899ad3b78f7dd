#pragma once

#include "base/CGGeometry.h"
#include "embedded/JsonLines.h"
#include "embedded/ScenarioError.h"

#include <QJsonObject>
#include <QJsonValue>

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace embedded {

/// An object of a JSON text being read: each key is asked for once, and what nobody asked for is an error in the end.
/// Whatever is wrong is thrown as a `ScenarioError`.
class JsonObject {
public:
    /// `label` says in messages which object this is; the whole has none.
    JsonObject(const JsonLines& lines, QJsonObject object, std::string path = {}, std::string label = {});

    void setLabel(std::string label) { label_ = std::move(label); }
    const std::string& label() const { return label_; }

    bool has(const char* key) const { return object_.contains(QLatin1String(key)); }

    /// A key that isn't there leaves `out` as it is; one that is null leaves an optional empty.
    template <class T>
    void read(const char* key, T& out)
    {
        const QJsonValue value = take(key);
        if (!value.isUndefined())
            convert(value, key, out);
    }
    template <class T>
    void require(const char* key, T& out)
    {
        if (!has(key))
            fail({}, std::string("\"") + key + "\" is missing");
        read(key, out);
    }
    /// One of a few words.
    template <class T>
    void readWord(const char* key, const std::map<std::string, T>& words, T& out)
    {
        std::string word;
        read(key, word);
        const auto meaning = words.find(word);
        if (meaning != words.end())
            out = meaning->second;
        else if (has(key))
            fail(key, std::string("\"") + key + "\" can't be \"" + word + "\"");
    }

    /// The object under a key; an empty one when there is none.
    JsonObject object(const char* key);
    /// The objects of the array under a key; `kind` and the index label them.
    std::vector<JsonObject> objects(const char* key, const std::string& kind);

    /// Call it when all keys were asked for.
    void done() const;
    /// Something is wrong with the value under the key, or with the object when it is empty.
    [[noreturn]] void fail(const std::string& key, const std::string& reason) const;

private:
    QJsonValue take(const char* key);
    std::string pathOf(const std::string& key) const;
    [[noreturn]] void mustBe(const std::string& key, const char* what) const;
    std::int64_t integer(const QJsonValue& value, const std::string& key) const;
    std::vector<double> numbers(const QJsonValue& value, const std::string& key, std::size_t count) const;

    void convert(const QJsonValue& value, const std::string& key, bool& out) const;
    void convert(const QJsonValue& value, const std::string& key, double& out) const;
    void convert(const QJsonValue& value, const std::string& key, std::string& out) const;
    void convert(const QJsonValue& value, const std::string& key, CGRect& out) const;
    void convert(const QJsonValue& value, const std::string& key, CGSize& out) const;

    template <std::integral Integer>
    void convert(const QJsonValue& value, const std::string& key, Integer& out) const
    {
        const std::int64_t wide = integer(value, key);
        if (!std::in_range<Integer>(wide))
            mustBe(key, "a smaller whole number, or none below 0");
        out = static_cast<Integer>(wide);
    }

    template <class T>
    void convert(const QJsonValue& value, const std::string& key, std::optional<T>& out) const
    {
        out.reset();
        if (value.isNull())
            return;
        T content {};
        convert(value, key, content);
        out = std::move(content);
    }

    template <class T>
    void convert(const QJsonValue& value, const std::string& key, std::vector<T>& out) const
    {
        if (!value.isArray())
            mustBe(key, "an array");
        out.clear();
        elements(value, [&](const QJsonValue& element, const std::string& index) {
            T content = T();
            convert(element, key + "/" + index, content);
            out.push_back(std::move(content));
        });
    }

    template <class T, class Order>
    void convert(const QJsonValue& value, const std::string& key, std::map<std::string, T, Order>& out) const
    {
        if (!value.isObject())
            mustBe(key, "an object");
        members(value,
            [&](const std::string& name, const QJsonValue& member) { convert(member, key + "/" + name, out[name]); });
    }

    static void elements(
        const QJsonValue& array, const std::function<void(const QJsonValue&, const std::string& index)>& each);
    static void members(
        const QJsonValue& object, const std::function<void(const std::string& name, const QJsonValue&)>& each);

    const JsonLines& lines_;
    QJsonObject object_;
    std::string path_;
    std::string label_;
    std::vector<std::string> asked_;
};

}
