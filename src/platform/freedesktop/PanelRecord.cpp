#include "freedesktop/PanelRecord.h"

#include "base/PreferenceFile.h"
#include "freedesktop/UserFolders.h"

#include <algorithm>

namespace freedesktop {
namespace {

PreferenceFile changedFile()
{
    return PreferenceFile(preferencesFolder() + "/com.merrowen.vantry.panel.plist");
}

std::optional<std::string> textAt(const Value* dictionary, const char* key)
{
    const Value* value = dictionary ? dictionary->find(key) : nullptr;
    return value && value->string() ? std::optional(*value->string()) : std::nullopt;
}

Value valueOf(const ChangedPanel& changed)
{
    Value::Dictionary made;
    for (const auto& [key, texts] : changed.made) {
        Value::Array values;
        for (const auto& text : texts)
            values.push_back(text ? Value(*text) : Value(false));
        made.set(key, values);
    }
    return Value::Dictionary { { "had", changed.had.value() }, { "made", made } };
}

}

std::optional<std::string> at(const Natives& natives, const std::string& key)
{
    const auto place = natives.find(key);
    return place == natives.end() ? std::nullopt : std::optional(place->second);
}

void put(Natives& natives, const std::string& key, const std::optional<std::string>& text)
{
    if (text)
        natives.insert_or_assign(key, *text);
    else
        natives.erase(key);
}

Value PanelRecord::value() const
{
    Value::Dictionary settings;
    for (const auto& [key, text] : natives)
        settings.set(key, text);
    return Value::Dictionary { { "kind", panel.kind->name }, { "panel", panel.name }, { "settings", settings },
        { "words", words } };
}

std::optional<PanelRecord> PanelRecord::of(const Value* value)
{
    const PanelKind* kind = panelKindNamed(textAt(value, "kind").value_or(""));
    const auto name = textAt(value, "panel");
    const Value* settings = value ? value->find("settings") : nullptr;
    const Value* words = value ? value->find("words") : nullptr;
    if (!kind || !name || !settings || !settings->dictionary() || !words || !words->dictionary())
        return std::nullopt;
    PanelRecord record { { kind, *name }, {}, *words->dictionary() };
    for (const auto& [key, text] : *settings->dictionary())
        if (text.string())
            record.natives.emplace(key, *text.string());
    return record;
}

void ChangedPanel::addMade(const Natives& natives)
{
    const PanelKind& kind = *had.panel.kind;
    for (const char* key : { kind.hidingKey, kind.sizeKey, kind.pinsKey })
        if (key && at(natives, key) != at(had.natives, key) && !isMade(key, at(natives, key)))
            made[key].push_back(at(natives, key));
}

bool ChangedPanel::isMade(const std::string& key, const std::optional<std::string>& text) const
{
    const auto texts = made.find(key);
    return texts != made.end() && std::ranges::find(texts->second, text) != texts->second.end();
}

std::optional<ChangedPanel> ChangedPanel::read()
{
    const auto values = changedFile().read().values;
    auto had = PanelRecord::of(values.find("had"));
    if (!had)
        return std::nullopt;
    ChangedPanel changed { *std::move(had), {} };
    const Value* made = values.find("made");
    if (!made || !made->dictionary())
        return changed;
    for (const auto& [key, texts] : *made->dictionary())
        for (const Value& text : texts.array() ? *texts.array() : Value::Array())
            changed.made[key].push_back(text.string() ? std::optional(*text.string()) : std::nullopt);
    return changed;
}

bool ChangedPanel::write() const
{
    const Value value = valueOf(*this);
    auto contents = changedFile().read();
    if (contents.values == *value.dictionary())
        return true;
    const auto replace = [&](PreferenceFile::Contents& present) { present.values = *value.dictionary(); };
    return changedFile().change(contents, replace).empty();
}

bool ChangedPanel::forget()
{
    return changedFile().remove().empty();
}

}
