#include "x11/WindowProperties.h"

#include <algorithm>
#include <utility>

namespace x11 {
namespace {

constexpr std::uint32_t titleLongs = textLimit / 4 + 1;
constexpr std::uint32_t listLongs = 64;

struct KindName {
    xcb_atom_t Atoms::*name;
    WindowKind kind;
};

constexpr KindName kindNames[] = {
    { &Atoms::netWmWindowTypeNormal, WindowKind::normal },
    { &Atoms::netWmWindowTypeDialog, WindowKind::dialog },
    { &Atoms::netWmWindowTypeUtility, WindowKind::utility },
    { &Atoms::netWmWindowTypeToolbar, WindowKind::utility },
    { &Atoms::netWmWindowTypeMenu, WindowKind::utility },
    { &Atoms::netWmWindowTypeSplash, WindowKind::splash },
    { &Atoms::netWmWindowTypeNotification, WindowKind::notification },
    { &Atoms::netWmWindowTypeDropdownMenu, WindowKind::popup },
    { &Atoms::netWmWindowTypePopupMenu, WindowKind::popup },
    { &Atoms::netWmWindowTypeTooltip, WindowKind::popup },
    { &Atoms::netWmWindowTypeCombo, WindowKind::popup },
    { &Atoms::netWmWindowTypeDnd, WindowKind::popup },
    { &Atoms::netWmWindowTypeDock, WindowKind::dock },
    { &Atoms::netWmWindowTypeDesktop, WindowKind::desktop },
};

/// The first type that is known; a window lists its types from the most to the least fitting.
std::optional<WindowKind> kindOf(std::span<const std::uint32_t> types, const Atoms& atoms)
{
    for (const xcb_atom_t type : types) {
        const auto known
            = std::ranges::find_if(kindNames, [&](const KindName& entry) { return atoms.*entry.name == type; });
        if (known != std::end(kindNames))
            return known->kind;
    }
    return std::nullopt;
}

NetStates statesOf(std::span<const std::uint32_t> states, const Atoms& atoms)
{
    const auto has = [&](xcb_atom_t state) { return std::ranges::find(states, state) != states.end(); };
    return {
        .above = has(atoms.netWmStateAbove),
        .fullScreen = has(atoms.netWmStateFullscreen),
        .hidden = has(atoms.netWmStateHidden),
        .shaded = has(atoms.netWmStateShaded),
        .maximized = has(atoms.netWmStateMaximizedVert) || has(atoms.netWmStateMaximizedHorz),
        .skipTaskbar = has(atoms.netWmStateSkipTaskbar),
        .demandsAttention = has(atoms.netWmStateDemandsAttention),
    };
}

/// Absent where a side is wider than any screen.
std::optional<Insets> insetsOf(const Property& property)
{
    constexpr std::uint32_t widest = 4096;
    const auto sides = property.numbers(XCB_ATOM_CARDINAL);
    if (sides.size() < 4 || std::ranges::any_of(sides, [](std::uint32_t side) { return side > widest; }))
        return std::nullopt;
    return Insets { int(sides[0]), int(sides[1]), int(sides[2]), int(sides[3]) };
}

std::optional<Strut> strutOf(const Property& property, std::size_t count)
{
    const auto numbers = property.numbers(XCB_ATOM_CARDINAL);
    if (numbers.size() < count)
        return std::nullopt;
    Strut strut { 0, 0, 0, 0, 0, UINT32_MAX, 0, UINT32_MAX, 0, UINT32_MAX, 0, UINT32_MAX };
    std::copy_n(numbers.begin(), count, strut.begin());
    return strut;
}

/// The two names of `WM_CLASS`, each ended by a null.
std::pair<std::string, std::string> classNames(const Property& property)
{
    const std::string_view both = property.bytes(XCB_ATOM_STRING);
    const std::size_t end = both.find('\0');
    if (end == both.npos)
        return { utf8FromLatin1(both, textLimit), {} };
    return { utf8FromLatin1(both.substr(0, end), textLimit), utf8FromLatin1(both.substr(end + 1), textLimit) };
}

constexpr WindowProperty table[] = {
    { &Atoms::netWmName, titleLongs,
        [](WindowRecord& window, const Property& name, const Atoms& atoms) { window.netName = name.text(atoms); },
        true },
    { &Atoms::wmName, titleLongs,
        [](WindowRecord& window, const Property& name, const Atoms& atoms) { window.legacyName = name.text(atoms); },
        true },
    { &Atoms::wmClass, listLongs,
        [](WindowRecord& window, const Property& names, const Atoms&) {
            std::tie(window.facts.instanceName, window.facts.className) = classNames(names);
        } },
    { &Atoms::wmClientMachine, listLongs,
        [](WindowRecord& window, const Property& name, const Atoms& atoms) { window.machine = name.text(atoms); } },
    { &Atoms::wmTransientFor, 1,
        [](WindowRecord& window, const Property& leader, const Atoms&) {
            window.facts.isTransient = leader.number(XCB_ATOM_WINDOW).has_value();
        } },
    { &Atoms::wmHints, 9,
        [](WindowRecord& window, const Property& hints, const Atoms& atoms) {
            constexpr std::uint32_t inputHint = 1;
            constexpr std::uint32_t urgencyHint = 1U << 8;
            const auto fields = hints.numbers(atoms.wmHints);
            window.facts.isUrgent = !fields.empty() && (fields[0] & urgencyHint) != 0;
            window.takesFocus = fields.size() < 2 || (fields[0] & inputHint) == 0 || fields[1] != 0;
        } },
    { &Atoms::wmProtocols, listLongs,
        [](WindowRecord& window, const Property& protocols, const Atoms& atoms) {
            const auto all = protocols.numbers(XCB_ATOM_ATOM);
            window.hasDeleteProtocol = std::ranges::find(all, atoms.wmDeleteWindow) != all.end();
        } },
    { &Atoms::wmState, 2,
        [](WindowRecord& window, const Property& state, const Atoms& atoms) {
            const auto number = state.number(atoms.wmState);
            window.facts.wmState = number ? std::optional(static_cast<WmState>(*number)) : std::nullopt;
        } },
    { &Atoms::netWmPid, 1,
        [](WindowRecord& window, const Property& pid, const Atoms&) {
            const auto number = pid.number(XCB_ATOM_CARDINAL);
            const bool isPid = number && *number > 0 && std::in_range<pid_t>(*number);
            window.declaredPid = isPid ? std::optional(static_cast<pid_t>(*number)) : std::nullopt;
        } },
    { &Atoms::netWmDesktop, 1,
        [](WindowRecord& window, const Property& desktop, const Atoms&) {
            window.facts.desktop = desktop.number(XCB_ATOM_CARDINAL);
        } },
    { &Atoms::netWmWindowType, listLongs,
        [](WindowRecord& window, const Property& types, const Atoms& atoms) {
            window.facts.declaredKind = kindOf(types.numbers(XCB_ATOM_ATOM), atoms);
        } },
    { &Atoms::netWmState, listLongs,
        [](WindowRecord& window, const Property& states, const Atoms& atoms) {
            window.facts.states = statesOf(states.numbers(XCB_ATOM_ATOM), atoms);
        } },
    { &Atoms::netFrameExtents, 4,
        [](WindowRecord& window, const Property& sides, const Atoms&) { window.frameExtents = insetsOf(sides); } },
    { &Atoms::gtkFrameExtents, 4,
        [](WindowRecord& window, const Property& sides, const Atoms&) { window.shadows = insetsOf(sides); } },
    { &Atoms::netWmStrut, 4,
        [](WindowRecord& window, const Property& strut, const Atoms&) { window.strut = strutOf(strut, 4); } },
    { &Atoms::netWmStrutPartial, 12,
        [](WindowRecord& window, const Property& strut, const Atoms&) { window.partialStrut = strutOf(strut, 12); } },
};

}

std::span<const WindowProperty> windowProperties()
{
    return table;
}

}
