#include "freedesktop/AccessibleTree.h"

#include "freedesktop/SessionBus.h"

#include <algorithm>

namespace freedesktop {
namespace {

using host::Attribute;
using host::AttributeValue;
using host::ElementID;

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* valueInterface = "org.a11y.atspi.Value";

/// Roles by their number (the enumeration of the protocol) and the platform's name of what is like it.
constexpr std::pair<std::uint32_t, const char*> roles[] = {
    { 2, "AXWindow" }, // alert
    { 7, "AXCheckBox" }, { 8, "AXMenuItem" }, // check menu item
    { 11, "AXComboBox" }, { 16, "AXWindow" }, // dialog
    { 19, "AXWindow" }, // file chooser
    { 23, "AXWindow" }, // frame
    { 26, "AXImage" }, // icon
    { 27, "AXImage" }, { 29, "AXStaticText" }, // label
    { 31, "AXList" }, { 33, "AXMenu" }, { 34, "AXMenuBar" }, { 35, "AXMenuItem" }, { 38, "AXTabGroup" },
    { 40, "AXTextField" }, // password
    { 41, "AXMenu" }, // popup menu
    { 42, "AXProgressIndicator" }, { 43, "AXButton" }, { 44, "AXRadioButton" }, { 45, "AXMenuItem" }, // radio menu item
    { 48, "AXScrollBar" }, { 49, "AXScrollArea" }, { 51, "AXSlider" }, { 52, "AXIncrementor" }, // spin button
    { 53, "AXSplitGroup" }, { 55, "AXTable" }, { 61, "AXTextArea" }, { 62, "AXButton" }, // toggle button
    { 63, "AXToolbar" }, { 65, "AXOutline" }, // tree
    { 66, "AXOutline" }, // tree table
    { 69, "AXWindow" }, { 75, "AXApplication" }, { 79, "AXTextField" }, // entry
    { 83, "AXHeading" }, { 88, "AXLink" }, { 116, "AXStaticText" }, // static
};

constexpr std::string_view numericRoles[]
    = { "AXSlider", "AXProgressIndicator", "AXScrollBar", "AXIncrementor", "AXSplitGroup" };
constexpr std::string_view namedByText[] = { "AXStaticText", "AXHeading" };
constexpr std::string_view editableRoles[] = { "AXTextField", "AXTextArea" };
/// Of a longer text, so many characters.
constexpr int mostCharacters = 1000;

bool isOneOf(std::string_view role, const auto& wanted)
{
    return std::ranges::find(wanted, role) != std::end(wanted);
}

int milliseconds(double seconds)
{
    return std::max(1, static_cast<int>(seconds * 1000));
}

AXError resultOf(const GError* error)
{
    for (const int code : { G_DBUS_ERROR_UNKNOWN_METHOD, G_DBUS_ERROR_UNKNOWN_INTERFACE, G_DBUS_ERROR_UNKNOWN_PROPERTY,
             G_DBUS_ERROR_INVALID_ARGS, G_DBUS_ERROR_NOT_SUPPORTED })
        if (g_error_matches(error, G_DBUS_ERROR, code))
            return kAXErrorAttributeUnsupported;
    const bool isLate = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT)
        || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
    return isLate ? kAXErrorCannotComplete : kAXErrorInvalidUIElement;
}

/// What a variant holds, where an attribute can be that.
AXError convert(GVariant* content, AttributeValue& value)
{
    if (g_variant_is_of_type(content, G_VARIANT_TYPE_STRING))
        value = std::string(g_variant_get_string(content, nullptr));
    else if (g_variant_is_of_type(content, G_VARIANT_TYPE_DOUBLE))
        value = g_variant_get_double(content);
    else
        return kAXErrorAttributeUnsupported;
    return kAXErrorSuccess;
}

}

AccessibleTree::~AccessibleTree()
{
    if (bus_)
        g_object_unref(bus_);
}

/// Whether there is a bus. What was missing once is looked for again at the next question.
bool AccessibleTree::open(double timeout)
{
    const std::lock_guard lock(opening_);
    if (bus_)
        return true;
    const std::unique_ptr<GDBusConnection, decltype(&g_object_unref)> session(
        sessionBus(milliseconds(timeout)), g_object_unref);
    if (!session)
        return false;
    const Variant answer(
        g_dbus_connection_call_sync(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
            nullptr, G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, milliseconds(timeout), nullptr, nullptr),
        g_variant_unref);
    if (!answer)
        return false;
    const char* address = nullptr;
    g_variant_get(answer.get(), "(&s)", &address);
    bus_ = busAt(address, milliseconds(timeout));
    return bus_ != nullptr;
}

AccessibleTree::Answer AccessibleTree::ask(const Object& object, const Question& question, double timeout)
{
    {
        const std::lock_guard lock(mutex_);
        if (silent_.contains(object.first)) {
            g_variant_unref(g_variant_ref_sink(question.arguments ? question.arguments : g_variant_new("()")));
            return { kAXErrorCannotComplete, { nullptr, g_variant_unref } };
        }
    }
    GError* error = nullptr;
    Variant content(g_dbus_connection_call_sync(bus_, object.first.c_str(), object.second.c_str(), question.interface,
                        question.method, question.arguments, G_VARIANT_TYPE(question.replyType), G_DBUS_CALL_FLAGS_NONE,
                        milliseconds(timeout), nullptr, &error),
        g_variant_unref);
    if (content)
        return { kAXErrorSuccess, std::move(content) };
    const AXError result = resultOf(error);
    g_error_free(error);
    if (result == kAXErrorCannotComplete) {
        const std::lock_guard lock(mutex_);
        silent_.insert(object.first);
    }
    return { result, std::move(content) };
}

AXError AccessibleTree::readProperty(
    const Object& object, const char* interface, const char* name, double timeout, AttributeValue& value)
{
    const Answer answer = ask(
        object, { "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, name), "(v)" }, timeout);
    if (answer.result != kAXErrorSuccess)
        return answer.result;
    GVariant* content = nullptr;
    g_variant_get(answer.content.get(), "(v)", &content);
    const Variant held(content, g_variant_unref);
    return convert(content, value);
}

std::vector<AccessibleTree::Object> AccessibleTree::objectsBelow(const Object& object, double timeout, AXError& error)
{
    std::vector<Object> objects;
    const Answer answer = ask(object, { accessible, "GetChildren", nullptr, "(a(so))" }, timeout);
    error = answer.result;
    if (error != kAXErrorSuccess)
        return objects;
    GVariantIter* all = nullptr;
    g_variant_get(answer.content.get(), "(a(so))", &all);
    const char* busName = nullptr;
    const char* path = nullptr;
    while (g_variant_iter_next(all, "(&s&o)", &busName, &path))
        objects.emplace_back(busName, path);
    g_variant_iter_free(all);
    return objects;
}

pid_t AccessibleTree::processOf(const std::string& busName, double timeout)
{
    const Answer answer = ask({ "org.freedesktop.DBus", "/org/freedesktop/DBus" },
        { "org.freedesktop.DBus", "GetConnectionUnixProcessID", g_variant_new("(s)", busName.c_str()), "(u)" },
        timeout);
    if (answer.result != kAXErrorSuccess)
        return 0;
    std::uint32_t pid = 0;
    g_variant_get(answer.content.get(), "(u)", &pid);
    return static_cast<pid_t>(pid);
}

/// The root of its tree.
std::optional<AccessibleTree::Object> AccessibleTree::program(pid_t pid, double timeout)
{
    AXError error = kAXErrorSuccess;
    const auto roots = objectsBelow({ "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root" }, timeout, error);
    const auto root
        = std::ranges::find_if(roots, [&](const Object& each) { return processOf(each.first, timeout) == pid; });
    return root == roots.end() ? std::nullopt : std::optional(*root);
}

AXError AccessibleTree::children(pid_t pid, double timeout, AttributeValue& value)
{
    if (!open(timeout))
        return kAXErrorAPIDisabled;
    const auto root = program(pid, timeout);
    return root ? readChildren(*root, pid, timeout, value) : kAXErrorNotImplemented;
}

AXError AccessibleTree::readChildren(const Object& object, pid_t pid, double timeout, AttributeValue& value)
{
    AXError error = kAXErrorSuccess;
    std::vector<ElementID> elements;
    for (const Object& child : objectsBelow(object, timeout, error))
        elements.push_back({ pid, ElementID::Kind::other, number(child) });
    if (error == kAXErrorSuccess)
        value = std::move(elements);
    return error;
}

std::optional<std::string> AccessibleTree::role(const Object& object, double timeout, AXError& error)
{
    const Answer answer = ask(object, { accessible, "GetRole", nullptr, "(u)" }, timeout);
    error = answer.result;
    if (error != kAXErrorSuccess)
        return std::nullopt;
    std::uint32_t number = 0;
    g_variant_get(answer.content.get(), "(u)", &number);
    const auto row = std::ranges::find(roles, number, &std::pair<std::uint32_t, const char*>::first);
    return row == std::end(roles) ? "AXGroup" : row->second;
}

/// A number, what is written there, or none, as fits the role.
AXError AccessibleTree::readValue(const Object& object, double timeout, AttributeValue& value)
{
    AXError error = kAXErrorSuccess;
    const auto kind = role(object, timeout, error);
    if (!kind)
        return error;
    if (isOneOf(*kind, numericRoles))
        return readProperty(object, valueInterface, "CurrentValue", timeout, value);
    if (isOneOf(*kind, namedByText))
        return readProperty(object, accessible, "Name", timeout, value);
    if (!isOneOf(*kind, editableRoles))
        return kAXErrorNoValue;
    const Answer answer
        = ask(object, { "org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, mostCharacters), "(s)" }, timeout);
    if (answer.result != kAXErrorSuccess)
        return answer.result;
    const Variant text(g_variant_get_child_value(answer.content.get(), 0), g_variant_unref);
    return convert(text.get(), value);
}

AXError AccessibleTree::read(const ElementID& element, Attribute attribute, double timeout, AttributeValue& value)
{
    const auto known = object(element.id);
    if (!known)
        return kAXErrorInvalidUIElement;
    switch (attribute) {
    case Attribute::role: {
        AXError error = kAXErrorSuccess;
        if (const auto name = role(*known, timeout, error))
            value = *name;
        return error;
    }
    case Attribute::title:
        return readProperty(*known, accessible, "Name", timeout, value);
    case Attribute::description:
        return readProperty(*known, accessible, "Description", timeout, value);
    case Attribute::value:
        return readValue(*known, timeout, value);
    case Attribute::minValue:
        return readProperty(*known, valueInterface, "MinimumValue", timeout, value);
    case Attribute::maxValue:
        return readProperty(*known, valueInterface, "MaximumValue", timeout, value);
    case Attribute::children:
        return readChildren(*known, element.pid, timeout, value);
    default:
        return kAXErrorAttributeUnsupported;
    }
}

/// What elements name an object by: its place in a list, counted from 1.
std::uint64_t AccessibleTree::number(const Object& object)
{
    const std::lock_guard lock(mutex_);
    const auto [place, isNew] = numbers_.emplace(object, objects_.size() + 1);
    if (isNew)
        objects_.push_back(object);
    return place->second;
}

std::optional<AccessibleTree::Object> AccessibleTree::object(std::uint64_t number)
{
    const std::lock_guard lock(mutex_);
    return number > 0 && number <= objects_.size() ? std::optional(objects_[number - 1]) : std::nullopt;
}

}
