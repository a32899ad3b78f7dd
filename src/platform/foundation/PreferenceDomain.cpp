#include "foundation/PreferenceDomain.h"

#include "base/PerDesktop.h"
#include "foundation/NSFileHandle.h"
#include "host/Desktop.h"
#include "host/Session.h"

namespace {

using Domains = std::map<std::string, std::shared_ptr<PreferenceDomain>>;

}

std::shared_ptr<PreferenceDomain> PreferenceDomain::named(const std::string& name)
{
    auto& domain = perDesktop<Domains>()[name];
    if (!domain)
        domain = std::make_shared<PreferenceDomain>(
            host::Desktop::current().session().preferencesFolder() + "/" + name + ".plist");
    return domain;
}

PreferenceDomain::PreferenceDomain(std::string file)
    : file_(std::move(file))
{
    load();
}

PreferenceDomain::~PreferenceDomain()
{
    if (telling_)
        RunLoop::main().cancel(*telling_);
}

void PreferenceDomain::follow(std::function<void()> told)
{
    told_ = std::move(told);
    watch_ = std::make_unique<FileWatch>(file_.path(), [this] { refresh(); });
}

const Value* PreferenceDomain::find(std::string_view key)
{
    refresh();
    return known_.values.find(key);
}

const Value::Dictionary& PreferenceDomain::values()
{
    refresh();
    return known_.values;
}

void PreferenceDomain::set(const Changes& changes)
{
    for (const auto& [key, value] : changes)
        unsaved_.insert_or_assign(key, value);
    if (isHeldBack_)
        return apply(changes, known_.values);
    Value::Dictionary before = known_.values;
    apply(changes, before);
    const std::string reason
        = file_.change(known_, [this](PreferenceFile::Contents& contents) { apply(unsaved_, contents.values); });
    if (reason.empty())
        unsaved_.clear();
    apply(unsaved_, known_.values);
    tellUnless(before);
    if (reason.empty())
        return;
    std::string keys;
    for (const auto& [key, value] : changes)
        keys += (keys.empty() ? "\"" : ", \"") + key + '"';
    tellFailure("setting " + keys + " is not saved in", reason);
}

void PreferenceDomain::forgetHeldBack()
{
    unsaved_.clear();
    isHeldBack_ = false;
    load();
}

void PreferenceDomain::removeAll()
{
    unsaved_.clear();
    if (const std::string reason = file_.remove(); !reason.empty())
        tellFailure("settings stay in", reason);
    load();
}

void PreferenceDomain::tellFailure(const std::string& what, const std::string& reason) const
{
    NSFileHandle::writeToStandardError("vantry: " + what + " " + file_.path() + ": " + reason + "\n");
}

void PreferenceDomain::apply(const Changes& changes, Value::Dictionary& values)
{
    for (const auto& [key, value] : changes) {
        if (value)
            values.set(key, *value);
        else
            values.erase(key);
    }
}

/// What another process wrote is looked for once a turn; outside of a turn, at every read.
void PreferenceDomain::refresh()
{
    const auto turn = RunLoop::Turn::current();
    if (turn && turn == checkedTurn_)
        return;
    checkedTurn_ = turn;
    if (file_.stamp() == known_.stamp)
        return;
    const Value::Dictionary before = std::move(known_.values);
    load();
    tellUnless(before);
}

/// Whoever follows is told in another turn: this one may be in the midst of a painting.
void PreferenceDomain::tellUnless(const Value::Dictionary& same)
{
    if (!told_ || telling_ || known_.values == same)
        return;
    telling_ = RunLoop::main().perform([this] {
        telling_.reset();
        told_();
    });
}

void PreferenceDomain::load()
{
    known_ = file_.read();
    apply(unsaved_, known_.values);
}
