#include "foundation/NSUserDefaults.h"

#include "foundation/NSBundle.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/PreferenceDomain.h"
#include "host/Desktop.h"
#include "host/Session.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

namespace {

/// Whatever the locale.
double leadingNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n"), text.size()));
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double number = 0;
    std::from_chars(text.begin(), text.end(), number);
    return number;
}

}

NSUserDefaults NSUserDefaults::standard()
{
    auto domain = PreferenceDomain::named(NSBundle::mainBundle().bundleIdentifier().value_or("vantry"));
    if (!domain->isFollowed())
        domain->follow([] { NSNotificationCenter::defaultCenter().post(NSUserDefaultsDidChangeNotification); });
    return NSUserDefaults(std::move(domain));
}

std::optional<NSUserDefaults> NSUserDefaults::initWithSuiteName(const std::string& name)
{
    if (name.empty() || name == NSBundle::mainBundle().bundleIdentifier())
        return std::nullopt;
    return NSUserDefaults(PreferenceDomain::named(name));
}

NSUserDefaults::Rehearsal::Rehearsal()
{
    standard().domain_->holdBack();
}

NSUserDefaults::Rehearsal::~Rehearsal()
{
    standard().domain_->forgetHeldBack();
}

std::optional<Value> NSUserDefaults::objectForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    return value ? std::optional(*value) : std::nullopt;
}

bool NSUserDefaults::boolForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    if (!value)
        return false;
    if (const auto flag = value->boolean())
        return *flag;
    if (const auto number = value->number())
        return *number != 0;
    const std::string* text = value->string();
    constexpr std::array<std::string_view, 3> words { "yes", "true", "1" };
    const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    return text && std::any_of(words.begin(), words.end(), [&](std::string_view word) {
        return std::equal(text->begin(), text->end(), word.begin(), word.end(), same);
    });
}

double NSUserDefaults::doubleForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    if (!value)
        return 0;
    if (const auto number = value->number())
        return *number;
    if (const auto flag = value->boolean())
        return *flag ? 1 : 0;
    const std::string* text = value->string();
    return text ? leadingNumber(*text) : 0;
}

std::int64_t NSUserDefaults::integerForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    if (const auto integer = value ? value->integer() : std::nullopt)
        return *integer;
    constexpr double limit = 9.2e18;
    return static_cast<std::int64_t>(std::clamp(doubleForKey(key), -limit, limit));
}

std::optional<std::string> NSUserDefaults::stringForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    if (!value)
        return std::nullopt;
    if (const std::string* text = value->string())
        return *text;
    return value->number() ? std::optional(description(*value)) : std::nullopt;
}

std::optional<std::vector<std::string>> NSUserDefaults::stringArrayForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    const Value::Array* array = value ? value->array() : nullptr;
    if (!array)
        return std::nullopt;
    std::vector<std::string> texts;
    for (const Value& element : *array) {
        if (!element.string())
            return std::nullopt;
        texts.push_back(*element.string());
    }
    return texts;
}

std::optional<Value::Array> NSUserDefaults::arrayForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    const Value::Array* array = value ? value->array() : nullptr;
    return array ? std::optional(*array) : std::nullopt;
}

std::optional<Value::Dictionary> NSUserDefaults::dictionaryForKey(std::string_view key) const
{
    const Value* value = domain_->find(key);
    const Value::Dictionary* dictionary = value ? value->dictionary() : nullptr;
    return dictionary ? std::optional(*dictionary) : std::nullopt;
}

void NSUserDefaults::setObject(Value value, std::string_view key)
{
    domain_->set(key, std::move(value));
}

void NSUserDefaults::removeObjectForKey(std::string_view key)
{
    domain_->set(key, std::nullopt);
}

void NSUserDefaults::setValuesForKeys(const Value::Dictionary& values)
{
    domain_->set(PreferenceDomain::Changes(values.begin(), values.end()));
}

bool NSUserDefaults::synchronize()
{
    domain_->synchronize();
    return domain_->isSaved();
}

std::optional<Value::Dictionary> NSUserDefaults::persistentDomainForName(const std::string& name)
{
    const Value::Dictionary& values = PreferenceDomain::named(name)->values();
    return values.empty() ? std::nullopt : std::optional(values);
}

void NSUserDefaults::removePersistentDomainForName(const std::string& name)
{
    PreferenceDomain::named(name)->removeAll();
    if (name == NSBundle::mainBundle().bundleIdentifier())
        host::Desktop::current().session().removeStandIns();
}
