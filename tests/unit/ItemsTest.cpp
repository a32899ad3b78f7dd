#include "ModelTest.h"

#include "foundation/NSUserDefaults.h"
#include "model/Items.h"
#include "model/Ordering.h"
#include "settings/Settings.h"

namespace {

class ItemsTest : public ModelTest {
protected:
    static Value tile(const std::string& label, const std::string& url)
    {
        return Value::Dictionary { { "tile-data",
            Value::Dictionary {
                { "file-label", label }, { "file-data", Value::Dictionary { { "_CFURLString", url } } } } } };
    }

    static Value tile(const std::string& name) { return tile(name, "file:///Applications/" + name + ".app/"); }

    /// The Dock's list, as whatever wrote it left it.
    static void storeDock(const Value& apps)
    {
        NSUserDefaults::initWithSuiteName("com.apple.dock")->setObject(apps, "persistent-apps");
    }

    /// One text an item: its name, "*" when pinned, its process where it runs, "!" when frontmost.
    Texts shown()
    {
        Texts texts;
        for (const BarItem& item : DockModel::items()) {
            const auto* process = item.pid ? world().process(*item.pid) : nullptr;
            const std::string running = process ? ":" + process->record->localizedName.value_or("?") : "";
            texts.push_back(item.name + (item.isPinned ? "*" : "") + running + (item.isFrontmost ? "!" : ""));
        }
        return texts;
    }
};

}

TEST_F(ItemsTest, PinnedItemsComeFirstThenWhatElseRuns)
{
    for (const char* name : { "Notes", "Mail", "Chat", "Hidden" })
        install(name);
    storeDock(Value::Array { tile("Apps", "file:///Applications/Anything.app/"), tile("Mail"), tile("Hidden"),
        tile("Notes"), tile("Ghost") });
    Settings::extraPinnedPaths.set({ path("Chat"), path("Mail"), path("Chat") });
    Settings::hiddenKeys.set({ "org.Hidden", "org.Editor", "Ghost" });
    for (const char* name : { "Editor", "Mail", "Apps" })
        run(name);
    run("Agent", host::ActivationPolicy::accessory);
    run("Chat", host::ActivationPolicy::accessory);
    world().launch({ .name = {}, .bundleIdentifier = {}, .bundlePath = {}, .icon = {}, .faults = {} });
    EXPECT_EQ(shown(), (Texts { "Apps*", "Mail*:Mail", "Notes*", "Chat*:Chat", "Editor:Editor", "Apps:Apps", "?:?" }))
        << "a hidden key takes away the pin, but not a running application";
    EXPECT_EQ(logged("dock: "), Texts { "dock: 5 pinned apps" });
    const auto items = DockModel::items();
    EXPECT_TRUE(items[0].isLauncher);
    EXPECT_FALSE(items[1].isLauncher || items[5].isLauncher) << "just a pinned entry of that name";
    EXPECT_EQ(DockModel::key(items.back()), "?");
}

TEST_F(ItemsTest, AMalformedTileIsSkippedButAForeignElementFailsTheWholeList)
{
    const auto tileOf = [](Value::Dictionary data) {
        return Value(Value::Dictionary { { "tile-data", Value(std::move(data)) } });
    };
    const Value fileless = tileOf({ { "file-label", "A" } });
    const Value urlless = tileOf({ { "file-label", "A" }, { "file-data", Value::Dictionary { { "x", 1 } } } });
    const Value nameless = tileOf({ { "file-label", 5 },
        { "file-data", Value::Dictionary { { "_CFURLString", "file:///Applications/N.app/" } } } });
    const struct {
        Value apps;
        Texts shown;
        std::string log;
    } cases[] {
        { Value::Array {
              tile("Mail"), Value::Dictionary { { "other", 1 } }, fileless, urlless, tile("B", "a b"), tile("C", "") },
            { "Mail*" }, "dock: 1 pinned apps" },
        { Value::Array { nameless }, { "?*" }, "dock: 1 pinned apps" },
        { Value::Array { tile("Mail"), tile("Mail") }, { "Mail*", "Mail*" }, "dock: 2 pinned apps" },
        { Value::Array { tile("Mail"), "text" }, {}, "dock: could not read persistent-apps" },
        { "text", {}, "dock: could not read persistent-apps" },
    };
    for (const auto& test : cases) {
        log_.clear();
        storeDock(test.apps);
        EXPECT_EQ(shown(), test.shown) << description(test.apps);
        EXPECT_EQ(logged("dock: "), Texts { test.log });
    }
}

TEST_F(ItemsTest, ARunningCopyIsFoundByItsPathFirstThenByItsIdentifier)
{
    install("Mail");
    storeDock(Value::Array { tile("Post", "file:///Applications/./Mail.app/") });
    embedded::Scenario::Process copy;
    copy.name = "Copy";
    copy.bundleIdentifier = "org.Mail";
    copy.bundlePath = "/Volumes/Backup/Mail.app";
    world().launch(copy);
    EXPECT_EQ(shown(), Texts { "Post*:Copy" });
    EXPECT_EQ(DockModel::items().front().bundleURL->absoluteString(), "file:///Applications/./Mail.app/");

    run("Mail");
    world().launch(copy);
    EXPECT_EQ(shown(), (Texts { "Post*:Mail", "Copy:Copy", "Copy:Copy" }));
}

TEST_F(ItemsTest, TheBarsOwnPinsAreNamedByTheSettingsThenByTheDesktop)
{
    install("Mail");
    embedded::Scenario::Application twice;
    twice.path = path("Twice");
    twice.displayName = "A.app B.app";
    world().install(twice);
    Settings::extraPinnedPaths.set({ path("Mail"), path("Twice"), path("Gone") });
    Settings::pinnedNames.set({ { path("Mail"), "Post" } });
    EXPECT_EQ(shown(), (Texts { "Post*", "A B*", "Gone*" }));
}

TEST_F(ItemsTest, TheUsersOrderDecides)
{
    std::vector<BarItem> items;
    for (const auto& [name, id] : { std::pair { "beta", "b" }, std::pair { "Apps", "launcher" },
             std::pair { "Alpha", "a1" }, std::pair { "gamma", "g" }, std::pair { "Alpha", "a2" } }) {
        BarItem& item = items.emplace_back();
        item.name = name;
        item.bundleID = id;
        item.isLauncher = item.name == "Apps";
    }
    const struct {
        AppOrder order;
        Settings::Strings manual;
        Texts ids;
    } cases[] {
        { AppOrder::dock, { "g" }, { "b", "launcher", "a1", "g", "a2" } },
        { AppOrder::alphabetical, { "g" }, { "launcher", "a1", "a2", "b", "g" } },
        { AppOrder::manual, { "g", "a2", "absent", "g" }, { "launcher", "g", "a2", "a1", "b" } },
        // A window's key stands once for each of them: the first place counts.
        { AppOrder::manual, { "b", "a1", "g", "b" }, { "launcher", "b", "a1", "g", "a2" } },
    };
    for (const auto& test : cases) {
        Settings::appOrder.set(test.order);
        Settings::manualOrder.set(test.manual);
        Texts ids;
        for (const BarItem& ordered : DockModel::ordered(items))
            ids.push_back(*ordered.bundleID);
        EXPECT_EQ(ids, test.ids) << title(test.order);
    }
}
