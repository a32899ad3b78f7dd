#include "freedesktop/PanelDock.h"

#include "base/PreferenceFile.h"
#include "freedesktop/PanelPins.h"
#include "freedesktop/PanelRestart.h"
#include "freedesktop/ProcessFiles.h"
#include "freedesktop/UserFolders.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace freedesktop {
namespace {

// In the domain.
constexpr const char* recordKey = "vantry-panel";

using Text = std::optional<std::string>;

/// The last word of a printed value: what stands before it tells its type.
std::string untyped(const std::string& text)
{
    return text.substr(text.rfind(' ') + 1);
}

Value hidesIn(const PanelKind& kind, const std::string& text, DesktopEntries&)
{
    return untyped(text) == untyped(kind.hidden);
}

Text hidingFor(const PanelKind& kind, const Value& hides, const Text&, const Text& now)
{
    if (!hides.boolean())
        return now;
    return *hides.boolean() ? Text(kind.hidden) : std::nullopt;
}

Value sizeIn(const PanelKind& kind, const std::string& text, DesktopEntries&)
{
    const std::string digits = untyped(text);
    std::int64_t size = kind.usualSize;
    std::from_chars(digits.data(), digits.data() + digits.size(), size);
    return size;
}

Text sizeFor(const PanelKind& kind, const Value& value, const Text&, const Text& now)
{
    const auto size = value.integer<int>();
    return size ? kind.sizePrefix + std::to_string(std::max(kind.smallestSize, *size)) : now;
}

Value tile(const std::string& label, const std::string& url)
{
    const Value::Dictionary file { { "_CFURLString", url }, { "_CFURLStringType", 15 } };
    return Value::Dictionary { { "tile-data", Value::Dictionary { { "file-label", label }, { "file-data", file } } } };
}

Value tilesIn(const PanelKind&, const std::string& text, DesktopEntries& entries)
{
    // The list of all applications, which every Dock has.
    Value::Array tiles { tile("Apps", "file:///System/Applications/Apps.app/") };
    for (const std::string& file : PanelPins::entries(text)) {
        const auto installed = entries.withId(std::filesystem::path(file).stem().string());
        if (!installed)
            continue;
        char* path = g_uri_escape_string(installed->bundlePath.c_str(), "/", TRUE);
        tiles.push_back(tile(installed->entry.name, "file://" + std::string(path) + '/'));
        g_free(path);
    }
    return tiles;
}

/// A Dock can be emptied; what else becomes of its list is told by the panel alone.
Text pinsFor(const PanelKind&, const Value& tiles, const Text& had, const Text& now)
{
    return tiles.array() && tiles.array()->empty() ? PanelPins::withoutPrograms(had.value_or("")) : now;
}

/// One thing that both have words for.
struct Aspect {
    const char* word;
    /// Null where a kind has none.
    const char* PanelKind::*key;
    Value (*meaning)(const PanelKind& kind, const std::string& text, DesktopEntries& entries);
    /// What the panel is to have for a word that isn't what it had; what it has now where that can't be told.
    Text (*textFor)(const PanelKind& kind, const Value& word, const Text& had, const Text& now);
};

constexpr Aspect aspects[] = {
    { "autohide", &PanelKind::hidingKey, hidesIn, hidingFor },
    { "tilesize", &PanelKind::sizeKey, sizeIn, sizeFor },
    { "persistent-apps", &PanelKind::pinsKey, tilesIn, pinsFor },
};

template <class Block>
void forEachAspect(const PanelKind& kind, Block block)
{
    for (const Aspect& aspect : aspects)
        if (const char* key = kind.*aspect.key)
            block(aspect, key);
}

bool isPins(const PanelKind& kind, std::string_view key)
{
    return kind.pinsKey && key == kind.pinsKey;
}

/// Absent when nobody answers.
std::optional<Natives> readNatives(const Panel& panel, PanelStore& store)
{
    Natives natives;
    forEachAspect(*panel.kind, [&](const Aspect&, const char* key) {
        put(natives, key, isPins(*panel.kind, key) ? PanelPins(panel.name).read(store, key) : store.own(key));
    });
    return store.answers() ? std::optional(natives) : std::nullopt;
}

Value meaning(const Aspect& aspect, const PanelKind& kind, const Text& text, PanelStore& store, DesktopEntries& entries)
{
    return aspect.meaning(kind, text ? *text : store.inForce(kind.*aspect.key).value_or(""), entries);
}

PanelRecord recordOf(const Panel& panel, Natives natives, PanelStore& store, DesktopEntries& entries)
{
    PanelRecord record { panel, std::move(natives), {} };
    forEachAspect(*panel.kind, [&](const Aspect& aspect, const char* key) {
        record.words.set(aspect.word, meaning(aspect, *panel.kind, at(record.natives, key), store, entries));
    });
    return record;
}

/// What the panel is to have so that the domain's words are true of it: what it had, wherever those are the same or
/// missing.
Natives wanted(const PanelRecord& had, const Natives& now, const Value::Dictionary& domain)
{
    Natives natives = had.natives;
    forEachAspect(*had.panel.kind, [&](const Aspect& aspect, const char* key) {
        const Value* word = domain.find(aspect.word);
        const Value* same = had.words.find(aspect.word);
        if (word && !(same && *word == *same))
            put(natives, key, aspect.textFor(*had.panel.kind, *word, at(had.natives, key), at(now, key)));
    });
    return natives;
}

/// Empty on success, else the reason.
std::string writeNatives(const Panel& panel, PanelStore& store, const Natives& natives)
{
    const PanelKind& kind = *panel.kind;
    const std::string failure = std::string(kind.name) + ": its settings can't be written, or nobody answers for them";
    auto present = readNatives(panel, store);
    if (!present)
        return failure;
    if (*present == natives)
        return {};
    std::optional<PanelRestart> restart;
    if (kind.readsOnce) {
        restart.emplace(kind.name);
        present = readNatives(panel, store);
        if (!restart->hasEnded() || !present)
            return std::string(kind.name) + " doesn't end, and would undo what is changed while it runs";
    }
    bool isDone = true;
    forEachAspect(kind, [&](const Aspect&, const char* key) {
        const Text text = at(natives, key);
        if (at(*present, key) == text)
            return;
        const bool isKept = isPins(kind, key)
            ? PanelPins(panel.name).write(store, key, text.value_or(""), processOf(kind.name) != 0)
            : store.set(key, text);
        isDone = isKept && isDone;
    });
    return store.finish() && isDone ? std::string() : failure;
}

PreferenceFile domainFile()
{
    return PreferenceFile(preferencesFolder() + "/com.apple.dock.plist");
}

/// Has the domain hold the record, and say those words; in one write, and only where it doesn't.
void tell(const PanelRecord& record, const Value::Dictionary& words)
{
    auto contents = domainFile().read();
    const auto set = [&](Value::Dictionary& values) {
        values.set(recordKey, record.value());
        for (const auto& [word, value] : words)
            values.set(word, value);
    };
    Value::Dictionary told = contents.values;
    set(told);
    if (told != contents.values)
        domainFile().change(contents, [&](PreferenceFile::Contents& present) { set(present.values); });
}

void tellAll(const PanelRecord& record)
{
    Value::Dictionary words = record.words;
    words.set("orientation", "bottom");
    tell(record, words);
}

/// Whether the domain was replaced since the panel was changed, by a backup that knows nothing of it or something else.
bool isReplaced(const ChangedPanel& changed, const Value::Dictionary& domain)
{
    const Value* record = domain.find(recordKey);
    return !record || *record != changed.had.value();
}

/// Whether the domain asks for nothing but what the panel had.
bool isToBeGivenBack(const ChangedPanel& changed, const Value::Dictionary& domain)
{
    return isReplaced(changed, domain) || wanted(changed.had, changed.had.natives, domain) == changed.had.natives;
}

/// Everything as it was. Empty on success, else the reason.
std::string giveBack(const ChangedPanel& changed)
{
    const auto store = changed.had.panel.kind->open(changed.had.panel.name);
    if (store)
        if (std::string reason = writeNatives(changed.had.panel, *store, changed.had.natives); !reason.empty())
            return reason;
    tellAll(changed.had);
    return ChangedPanel::forget() ? std::string() : "the record of the panel can't be removed";
}

PreferenceFile barSettingsFile()
{
    return PreferenceFile(preferencesFolder() + "/com.merrowen.vantry.plist");
}

std::string noAnswerOf(const PanelKind& kind)
{
    return std::string(kind.name) + ": nobody answers for its settings";
}

struct Found {
    std::optional<Panel> panel;
    /// Why that can't be known; else empty.
    std::string reason;
};

/// The one on the bar's edge.
Found panelOf(const std::vector<std::string>& programs)
{
    const auto settings = barSettingsFile().read().values;
    const Value* top = settings.find("barEdge");
    const auto edge = top && *top == Value("top") ? PanelEdge::top : PanelEdge::bottom;
    for (const PanelKind& kind : panelKinds()) {
        if (std::ranges::find(programs, kind.name) == programs.end())
            continue;
        for (const std::string& name : kind.panels()) {
            const auto store = kind.open(name);
            if (store && kind.edgeOf(*store) == edge)
                return { Panel { &kind, name }, {} };
            if (store && !store->answers())
                return { std::nullopt, noAnswerOf(kind) };
        }
    }
    return {};
}

std::vector<std::string> runningPanels()
{
    std::vector<std::string> programs;
    for (const PanelKind& kind : panelKinds())
        if (processOf(kind.name) != 0)
            programs.emplace_back(kind.name);
    return programs;
}

/// What the user has chosen for himself while the panel stood changed is what it has from then on.
void takeInChoices(ChangedPanel& changed, const Natives& now, PanelStore& store, DesktopEntries& entries)
{
    const PanelKind& kind = *changed.had.panel.kind;
    PanelRecord had = changed.had;
    Value::Dictionary chosen;
    forEachAspect(kind, [&](const Aspect& aspect, const char* key) {
        const Text text = at(now, key);
        Text kept = text;
        if (text == at(had.natives, key) || changed.isMade(key, text))
            return;
        // Of a list that was emptied only what is new can be a choice.
        if (isPins(kind, key) && changed.made.contains(key))
            kept = PanelPins::withAdded(at(had.natives, key).value_or(""), text.value_or(""));
        if (kept == at(had.natives, key))
            return;
        put(had.natives, key, kept);
        had.words.set(aspect.word, meaning(aspect, kind, kept, store, entries));
        chosen.set(aspect.word, meaning(aspect, kind, text, store, entries));
    });
    if (had.natives == changed.had.natives)
        return;
    changed.had = had;
    if (changed.write())
        tell(had, chosen);
}

/// What the panel has, for the first change of it. What the domain says otherwise than the panel was known to have is
/// asked of it, and the rest follows the panel. Absent where nothing was known: then all is told, and nothing asked.
std::optional<ChangedPanel> firstChange(const PanelRecord& has, const Value::Dictionary& domain)
{
    const auto known = PanelRecord::of(domain.find(recordKey));
    if (!known || known->panel != has.panel) {
        tellAll(has);
        return std::nullopt;
    }
    Value::Dictionary words;
    for (const auto& [word, value] : has.words) {
        const Value* said = domain.find(word);
        const Value* knownValue = known->words.find(word);
        if (!said || (knownValue && *said == *knownValue))
            words.set(word, value);
    }
    tell(has, words);
    return ChangedPanel { has, {} };
}

}

std::unique_ptr<PanelStore> PanelDock::barSettings()
{
    return keysOfFile(barSettingsFile().path(), "");
}

void PanelDock::takeIn(const std::vector<std::string>& programs, DesktopEntries& entries)
{
    auto changed = ChangedPanel::read();
    if (changed && isToBeGivenBack(*changed, domainFile().read().values) && giveBack(*changed).empty())
        changed.reset();
    const bool isAnyKnown = std::ranges::any_of(programs, [](const auto& name) { return panelKindNamed(name); });
    if (!isAnyKnown)
        return;

    const auto [panel, reason] = panelOf(programs);
    if (!reason.empty())
        return;
    if (changed && panel != changed->had.panel) {
        const bool runs = std::ranges::find(programs, changed->had.panel.kind->name) != programs.end();
        if (!runs || !giveBack(*changed).empty())
            return;
        changed.reset();
    }
    const auto store = panel ? panel->kind->open(panel->name) : nullptr;
    auto now = store ? readNatives(*panel, *store) : std::nullopt;
    if (now && changed)
        takeInChoices(*changed, *now, *store, entries);
    else if (now)
        tellAll(recordOf(*panel, *std::move(now), *store, entries));
}

std::string PanelDock::relaunch(DesktopEntries& entries)
{
    auto changed = ChangedPanel::read();
    if (changed && isToBeGivenBack(*changed, domainFile().read().values))
        return giveBack(*changed);
    const auto programs = runningPanels();
    const auto [panel, reason] = panelOf(programs);
    if (!reason.empty())
        return reason;
    if (changed && panel != changed->had.panel) {
        const bool runs = std::ranges::find(programs, changed->had.panel.kind->name) != programs.end();
        return runs ? giveBack(*changed) : std::string();
    }
    const auto store = panel ? panel->kind->open(panel->name) : nullptr;
    if (!store)
        return {};
    const auto now = readNatives(*panel, *store);
    if (!now)
        return noAnswerOf(*panel->kind);
    if (changed)
        takeInChoices(*changed, *now, *store, entries);
    else
        changed = firstChange(recordOf(*panel, *now, *store, entries), domainFile().read().values);
    if (!changed)
        return {};
    const Natives natives = wanted(changed->had, *now, domainFile().read().values);
    if (natives == *now)
        return {};
    // Known before anything is changed, so that whatever comes of it can be undone.
    changed->addMade(natives);
    if (!changed->write())
        return "what the panel has can't be recorded, so it stays as it is";
    return writeNatives(*panel, *store, natives);
}

}
