#include "freedesktop/PanelDock.h"

#include "base/PreferenceFile.h"
#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>

namespace freedesktop {
namespace {

namespace fs = std::filesystem;

using PanelDock::Panel;
using PanelDock::Tile;
using PanelDock::TileOf;

// In the domain.
constexpr const char* recordKey = "vantry-panel";
constexpr const char* tilesKey = "persistent-apps";
constexpr const char* hidesKey = "autohide";
constexpr const char* sizeKey = "tilesize";

PreferenceFile domainFile()
{
    return PreferenceFile(preferencesFolder() + "/com.apple.dock.plist");
}

/// The record of a panel while it stands changed.
PreferenceFile changedFile()
{
    return PreferenceFile(preferencesFolder() + "/com.merrowen.vantry.panel.plist");
}

/// The panel's settings by its own keys, as its store's texts; without one that isn't set.
using Natives = std::map<std::string, std::string>;

/// What a panel has, in its own words and in the domain's.
struct Record {
    Panel panel;
    Natives natives;
    bool hides = false;
    std::int64_t size = 0;
    /// Absent where the panel has no pins.
    std::optional<Value> tiles;
};

std::optional<std::string> textAt(const Value* dictionary, const char* key)
{
    const Value* value = dictionary ? dictionary->find(key) : nullptr;
    return value && value->string() ? std::optional(*value->string()) : std::nullopt;
}

Value valueOf(const Record& record)
{
    Value::Dictionary natives;
    for (const auto& [key, text] : record.natives)
        natives.set(key, text);
    Value::Dictionary value { { "kind", record.panel.kind->name }, { "panel", record.panel.name },
        { "settings", natives }, { hidesKey, record.hides }, { sizeKey, record.size } };
    if (record.tiles)
        value.set(tilesKey, *record.tiles);
    return value;
}

std::optional<Record> recordOf(const Value* value)
{
    const PanelKind* kind = panelKindNamed(textAt(value, "kind").value_or(""));
    const auto name = textAt(value, "panel");
    const Value* natives = value ? value->find("settings") : nullptr;
    if (!kind || !name || !natives || !natives->dictionary())
        return std::nullopt;
    Record record { { kind, *name }, {}, false, kind->usualSize, std::nullopt };
    for (const auto& [key, text] : *natives->dictionary())
        if (text.string())
            record.natives.emplace(key, *text.string());
    if (const Value* hides = value->find(hidesKey))
        record.hides = hides->boolean().value_or(false);
    if (const Value* size = value->find(sizeKey))
        record.size = size->integer().value_or(kind->usualSize);
    if (const Value* tiles = value->find(tilesKey))
        record.tiles = *tiles;
    return record;
}

int numberIn(const std::string& text, int otherwise)
{
    const auto digit = text.find_first_of("0123456789", text.starts_with("uint32 ") ? 7 : 0);
    int number = otherwise;
    if (digit != text.npos)
        std::from_chars(text.data() + digit, text.data() + text.size(), number);
    return number;
}

Value tilesOf(const std::string& pins, const TileOf& tileOf)
{
    Value::Array tiles;
    const auto add = [&](const Tile& tile) {
        const Value::Dictionary file { { "_CFURLString", tile.url }, { "_CFURLStringType", 15 } };
        tiles.push_back(Value::Dictionary {
            { "tile-data", Value::Dictionary { { "file-label", tile.label }, { "file-data", file } } } });
    };
    // The list of all applications, which every Dock has.
    add({ "Apps", "file:///System/Applications/Apps.app/" });
    for (const std::string& entry : pinnedEntries(pins))
        if (const auto tile = tileOf(entry))
            add(*tile);
    return tiles;
}

Natives readNatives(const PanelKind& kind, PanelStore& store)
{
    Natives natives;
    for (const char* key : { kind.hidingKey, kind.sizeKey })
        if (auto text = store.own(key))
            natives.emplace(key, *std::move(text));
    if (kind.pinsKey)
        natives.emplace(kind.pinsKey, pinsText(kind, store));
    return natives;
}

/// What the panel's words mean in the domain's.
Record recordOf(const Panel& panel, Natives natives, PanelStore& store, const TileOf& tileOf)
{
    const PanelKind& kind = *panel.kind;
    const auto meant = [&](const char* key) {
        const auto own = natives.find(key);
        return own == natives.end() ? store.inForce(key).value_or("") : own->second;
    };
    Record record { panel, std::move(natives), false, kind.usualSize, std::nullopt };
    record.hides = meant(kind.hidingKey) == kind.hidden;
    record.size = numberIn(meant(kind.sizeKey), kind.usualSize);
    if (kind.pinsKey)
        record.tiles = tilesOf(record.natives.at(kind.pinsKey), tileOf);
    return record;
}

/// What the panel is to have so that the domain's words are true of it: what it had, wherever those are the same or
/// missing.
Natives wanted(const Record& had, const Value::Dictionary& domain)
{
    const PanelKind& kind = *had.panel.kind;
    Natives natives = had.natives;
    const Value* hides = domain.find(hidesKey);
    if (hides && hides->boolean() == true && !had.hides)
        natives.insert_or_assign(kind.hidingKey, kind.hidden);
    else if (hides && hides->boolean() == false && had.hides)
        natives.erase(kind.hidingKey);
    const Value* value = domain.find(sizeKey);
    const auto size = value ? value->integer() : std::nullopt;
    if (size && *size != had.size)
        natives.insert_or_assign(
            kind.sizeKey, kind.sizePrefix + std::to_string(std::max<std::int64_t>(kind.smallestSize, *size)));
    const Value* tiles = domain.find(tilesKey);
    if (had.tiles && tiles && tiles->array() && tiles->array()->empty() && !had.tiles->array()->empty())
        natives.insert_or_assign(kind.pinsKey, noPins());
    return natives;
}

bool runs(const char* program)
{
    std::error_code error;
    for (const auto& process : fs::directory_iterator("/proc", error)) {
        struct stat status { };
        const pid_t pid = static_cast<pid_t>(numberIn(process.path().filename().string(), 0));
        if (pid > 0 && ::stat(process.path().c_str(), &status) == 0 && status.st_uid == ::getuid()
            && programOf(pid) == program)
            return true;
    }
    return false;
}

bool writeNatives(const PanelKind& kind, PanelStore& store, const Natives& natives)
{
    bool isDone = true;
    const Natives present = readNatives(kind, store);
    for (const char* key : { kind.hidingKey, kind.sizeKey, kind.pinsKey }) {
        if (!key)
            continue;
        const auto now = present.find(key);
        const auto then = natives.find(key);
        const auto value = then == natives.end() ? std::nullopt : std::optional(then->second);
        if ((now == present.end() ? std::nullopt : std::optional(now->second)) == value)
            continue;
        const bool isPins = kind.pinsKey && std::string_view(key) == kind.pinsKey;
        isDone = (isPins ? setPins(kind, store, value.value_or(noPins())) : store.set(key, value)) && isDone;
    }
    store.finish();
    return isDone;
}

/// What is known of a panel that stands changed: what it had, and what it was made to have.
struct Changed {
    Record had;
    Natives made;
};

std::optional<Changed> readChanged()
{
    const auto values = changedFile().read().values;
    auto had = recordOf(values.find("had"));
    if (!had)
        return std::nullopt;
    Changed changed { *std::move(had), {} };
    if (const Value* made = values.find("made"); made && made->dictionary())
        for (const auto& [key, text] : *made->dictionary())
            if (text.string())
                changed.made.emplace(key, *text.string());
    return changed;
}

bool writeChanged(const Changed& changed)
{
    Value::Dictionary made;
    for (const auto& [key, text] : changed.made)
        made.set(key, text);
    auto contents = changedFile().read();
    return changedFile()
        .change(contents,
            [&](PreferenceFile::Contents& present) {
                present.values = { { "had", valueOf(changed.had) }, { "made", made } };
            })
        .empty();
}

/// Has the domain tell of the panel, in one write and only where it doesn't.
void tellOf(const Record& record, bool areValuesToo)
{
    auto contents = domainFile().read();
    const auto tell = [&](Value::Dictionary& values) {
        values.set(recordKey, valueOf(record));
        if (!areValuesToo)
            return;
        values.set("orientation", "bottom");
        values.set(hidesKey, record.hides);
        values.set(sizeKey, record.size);
        if (record.tiles)
            values.set(tilesKey, *record.tiles);
    };
    Value::Dictionary told = contents.values;
    tell(told);
    if (told != contents.values)
        domainFile().change(contents, [&](PreferenceFile::Contents& present) { tell(present.values); });
}

void tellOfNone()
{
    auto contents = domainFile().read();
    if (contents.values.find(recordKey))
        domainFile().change(contents, [](PreferenceFile::Contents& present) { present.values.erase(recordKey); });
}

/// Whether the domain was replaced since the panel was changed, by a backup that knows nothing of it or something else.
bool isReplaced(const Changed& changed, const Value::Dictionary& domain)
{
    const Value* record = domain.find(recordKey);
    return !record || *record != valueOf(changed.had);
}

bool isGivenBack(const Changed& changed, const Value::Dictionary& domain)
{
    return isReplaced(changed, domain) || wanted(changed.had, domain) == changed.had.natives;
}

/// Everything as it was.
bool giveBack(const Changed& changed)
{
    const auto store = changed.had.panel.kind->open(changed.had.panel.name);
    if (store && !writeNatives(*changed.had.panel.kind, *store, changed.had.natives))
        return false;
    tellOf(changed.had, isReplaced(changed, domainFile().read().values));
    return changedFile().remove().empty();
}

PanelEdge barEdge()
{
    const auto values = PreferenceFile(preferencesFolder() + "/com.merrowen.vantry.plist").read().values;
    const Value* edge = values.find("barEdge");
    return edge && edge->string() && *edge->string() == "top" ? PanelEdge::top : PanelEdge::bottom;
}

std::optional<Panel> panelOn(PanelEdge edge, const std::vector<std::string>& programs)
{
    for (const PanelKind& kind : panelKinds()) {
        if (std::ranges::find(programs, kind.program) == programs.end())
            continue;
        for (const std::string& name : kind.panels()) {
            const auto store = kind.open(name);
            if (store && kind.edgeOf(store->inForce(kind.placeKey).value_or("")) == edge)
                return Panel { &kind, name };
        }
    }
    return std::nullopt;
}

/// What the user has chosen anew while the panel stood changed is what it has from then on.
void takeInChoices(Changed& changed, PanelStore& store, const TileOf& tileOf)
{
    const Natives now = readNatives(*changed.had.panel.kind, store);
    Natives had = changed.had.natives;
    const auto at = [](const Natives& natives, const std::string& key) {
        const auto place = natives.find(key);
        return place == natives.end() ? std::nullopt : std::optional(place->second);
    };
    const PanelKind& kind = *changed.had.panel.kind;
    for (const char* key : { kind.hidingKey, kind.sizeKey }) {
        const auto value = at(now, key);
        if (value == at(had, key) || value == at(changed.made, key))
            continue;
        if (value)
            had.insert_or_assign(key, *value);
        else
            had.erase(key);
    }
    if (had == changed.had.natives)
        return;
    changed.had = recordOf(changed.had.panel, had, store, tileOf);
    if (writeChanged(changed))
        tellOf(changed.had, true);
}

}

std::optional<Panel> PanelDock::takeIn(const std::vector<std::string>& programs, const TileOf& tileOf)
{
    auto changed = readChanged();
    if (changed && isGivenBack(*changed, domainFile().read().values) && giveBack(*changed))
        changed.reset();

    const auto panel = panelOn(barEdge(), programs);
    if (changed && panel != changed->had.panel) {
        // It runs on another edge now, or not at all, or beside another that has come to this one.
        const bool isElsewhere = std::ranges::find(programs, changed->had.panel.kind->program) != programs.end();
        if (!isElsewhere || !giveBack(*changed))
            return std::nullopt;
        changed.reset();
    }
    if (!panel) {
        tellOfNone();
        return std::nullopt;
    }
    const auto store = panel->kind->open(panel->name);
    if (changed)
        takeInChoices(*changed, *store, tileOf);
    else
        tellOf(recordOf(*panel, readNatives(*panel->kind, *store), *store, tileOf), true);
    return panel;
}

bool PanelDock::relaunch()
{
    const auto domain = domainFile().read().values;
    auto changed = readChanged();
    if (changed && isGivenBack(*changed, domain))
        return giveBack(*changed);

    const auto record = changed ? std::optional(changed->had) : recordOf(domain.find(recordKey));
    if (!record || !runs(record->panel.kind->program))
        return true;
    const Natives natives = wanted(*record, domain);
    const auto store = record->panel.kind->open(record->panel.name);
    if (!store)
        return true;
    if (!changed && natives == record->natives)
        return true;
    // Known before anything is changed, so that whatever comes of it can be undone.
    if (!writeChanged({ *record, natives }))
        return false;
    return writeNatives(*record->panel.kind, *store, natives);
}

}
