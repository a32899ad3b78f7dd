#include "foundation/CFPreferences.h"

#include "foundation/PreferenceDomain.h"

void CFPreferencesAppSynchronize(const std::string& domain)
{
    PreferenceDomain::named(domain)->synchronize();
}

std::optional<Value> CFPreferencesCopyAppValue(std::string_view key, const std::string& domain)
{
    const Value* value = PreferenceDomain::named(domain)->find(key);
    return value ? std::optional(*value) : std::nullopt;
}
