#include "ModelTest.h"

#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/PreferenceDomain.h"
#include "settings/Settings.h"

namespace {

const Value foreign = Value::Dictionary { { "unknown", 1 } };

class SettingsTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        observer_ = NSNotificationCenter::defaultCenter().addObserver(
            "VantrySettingsDidChange", [this](const NSNotification&) { ++changes_; });
    }
    void TearDown() override
    {
        NSNotificationCenter::defaultCenter().removeObserver(observer_);
        ModelTest::TearDown();
    }

    /// As another program, or a damaged file, would have it.
    static void store(const char* key, const Value& value) { NSUserDefaults::standard().setObject(value, key); }

    NSNotificationCenter::Token observer_;
    int changes_ = 0;
};

/// One setting, its values as they are stored.
struct Row {
    const char* key;
    Value fallback;
    Value other;
    std::function<Value()> read;
    std::function<void()> writeOther;
};

template <class T>
Row row(const char* key, const Settings::Setting<T>& setting, const T& fallback, const T& other)
{
    using Stored = Settings::Stored<T>;
    return { key, Stored::value(fallback), Stored::value(other), [&] { return Stored::value(setting()); },
        [&setting, other] { setting.set(other); } };
}

std::vector<Row> rows()
{
    using namespace Settings;
    return {
        row("showLauncher", showLauncher, true, false),
        row("showSearch", showSearch, true, false),
        row("showDesktopButton", showDesktopButton, true, false),
        row("showFinderButton", showFinderButton, true, false),
        row("showTrash", showTrash, true, false),
        row("barStyle", barStyle, BarStyle::solid, BarStyle::gradient),
        row<std::string>("barTintHex", barTintHex, "1A1C22", "FFFFFF"),
        row("floatingBar", floatingBar, false, true),
        row<std::string>("accentHex", accentHex, "", "00FF00"),
        row("barEdge", barEdge, BarEdge::bottom, BarEdge::top),
        row("multiDisplayMode", multiDisplayMode, MultiDisplayMode::perScreen, MultiDisplayMode::mirrored),
        row("grouping", grouping, WindowGrouping::always, WindowGrouping::automatic),
        row("barVisible", barVisible, true, false),
        row("showMenuBarIcon", showMenuBarIcon, true, false),
        row("currentSpaceOnly", currentSpaceOnly, false, true),
        row("restoreOnQuit", restoreOnQuit, true, false),
        row("manageDock", manageDock, true, false),
        row("showWindowPips", showWindowPips, true, false),
        row("showBadges", showBadges, true, false),
        row("enableShortcuts", enableShortcuts, true, false),
        row("barSize", barSize, BarSize::large, BarSize::small),
        row("appOrder", appOrder, AppOrder::dock, AppOrder::manual),
        row<Strings>("manualOrder", manualOrder, {}, { "b", "a" }),
        row<Strings>("extraPinnedPaths", extraPinnedPaths, {}, { "/Applications/A.app" }),
        row<StringMap>("pinnedNames", pinnedNames, {}, { { "/Applications/A.app", "A" } }),
        row("dockMigrated", dockMigrated, false, true),
        row<Strings>("hiddenKeys", hiddenKeys, {}, { "org.a" }),
        row("autoFitWindows", autoFitWindows, true, false),
        row("showWindowPreviews", showWindowPreviews, true, false),
        row("showTooltips", showTooltips, true, false),
    };
}

}

TEST_F(SettingsTest, EachHasItsDefaultIsStoredUnderItsKeyAndTellsOfEachWrite)
{
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.key);
        EXPECT_EQ(row.read(), row.fallback);
        changes_ = 0;
        row.writeOther();
        row.writeOther();
        EXPECT_EQ(changes_, 2);
        EXPECT_EQ(NSUserDefaults::standard().objectForKey(row.key), row.other);
        EXPECT_EQ(row.read(), row.other);
    }
}

TEST_F(SettingsTest, WhatAnotherProgramWritesIsToldOnceToo)
{
    Settings::followOtherPrograms();
    Settings::barSize.set(BarSize::small);
    PreferenceDomain other((root() / "Preferences" / "com.merrowen.vantry.plist").string());
    changes_ = 0;
    other.set({ { "barEdge", "top" }, { "barSize", "medium" } });
    EXPECT_EQ(Settings::barEdge(), BarEdge::top);
    settle();
    EXPECT_EQ(changes_, 1);
    Settings::barEdge.set(BarEdge::bottom);
    settle();
    EXPECT_EQ(changes_, 2) << "a write of its own is told by itself alone";
}

TEST_F(SettingsTest, WhatIsOfAnotherTypeReadsAsTheDefault)
{
    for (const Row& row : rows()) {
        store(row.key, foreign);
        // A boolean that is present but none reads as false, whatever its default.
        EXPECT_EQ(row.read(), row.fallback.boolean() ? Value(false) : row.fallback) << row.key;
    }
    store("barSize", "gigantic");
    EXPECT_EQ(Settings::barSize(), BarSize::large);
    store("pinnedNames", Value::Dictionary { { "/a", "A" }, { "/b", 2 } });
    EXPECT_TRUE(Settings::pinnedNames().empty());
    store("hiddenKeys", Value::Array { "a", 1 });
    EXPECT_TRUE(Settings::hiddenKeys().empty());
}

TEST_F(SettingsTest, EveryCaseSurvivesAWriteAndARead)
{
    const auto survives = [](const auto& setting) {
        for (const auto value : allCases<typename std::remove_cvref_t<decltype(setting)>::Type>()) {
            setting.set(value);
            EXPECT_EQ(setting(), value);
        }
    };
    survives(Settings::barStyle);
    EXPECT_EQ(log_.back(), "setting barStyle -> gradient");
    survives(Settings::barSize);
    survives(Settings::barEdge);
    survives(Settings::multiDisplayMode);
    survives(Settings::grouping);
    survives(Settings::appOrder);
    // The raw value isn't the name that the language allows for the case.
    store("grouping", "auto");
    EXPECT_EQ(Settings::grouping(), WindowGrouping::automatic);
}

TEST_F(SettingsTest, OpacityStaysBetweenHalfAndWhole)
{
    const struct {
        Value stored;
        double read;
    } cases[] { { 0.1, 0.5 }, { 0.5, 0.5 }, { 0.7, 0.7 }, { 1, 1.0 }, { 5.0, 1.0 }, { "opaque", 0.5 },
        { " +0.75 of it", 0.75 }, { std::numeric_limits<double>::quiet_NaN(), 0.5 } };
    EXPECT_EQ(Settings::barOpacity(), 1.0);
    for (const auto& test : cases) {
        store("barOpacity", test.stored);
        EXPECT_EQ(Settings::barOpacity(), test.read) << description(test.stored);
        if (const auto number = test.stored.number()) {
            Settings::barOpacity.set(*number);
            EXPECT_EQ(NSUserDefaults::standard().doubleForKey("barOpacity"), test.read);
        }
    }
}

TEST_F(SettingsTest, NoComponentIsLostWhateverOrderIsStored)
{
    const std::string inOrder = "launcher search showDesktop finder apps trash";
    const struct {
        Value stored;
        std::string read;
    } cases[] {
        { Value::Array { "apps", "clock", "search" }, "apps search launcher showDesktop finder trash" },
        { Value::Array { "trash", "apps", "finder", "showDesktop", "search", "launcher" },
            "trash apps finder showDesktop search launcher" },
        { Value::Array { "clock" }, inOrder },
        { Value::Array {}, inOrder },
        { Value::Array { "apps", 1 }, inOrder },
        { "apps", inOrder },
    };
    for (const auto& test : cases) {
        store("componentOrder", test.stored);
        std::string read;
        for (const BarComponent component : Settings::componentOrder())
            read += (read.empty() ? "" : " ") + std::string(rawValue(component));
        EXPECT_EQ(read, test.read) << description(test.stored);
    }
    const std::vector order { BarComponent::trash, BarComponent::launcher, BarComponent::search,
        BarComponent::showDesktop, BarComponent::finder, BarComponent::apps };
    Settings::componentOrder.set(order);
    EXPECT_EQ(Settings::componentOrder(), order);
}

TEST_F(SettingsTest, EachComponentHasItsOwnVisibilityButTheButtonsAlwaysShow)
{
    for (const BarComponent component : allCases<BarComponent>()) {
        changes_ = 0;
        Settings::setVisible(component, false);
        const bool canHide = component != BarComponent::apps;
        EXPECT_EQ(changes_, canHide ? 1 : 0);
        for (const BarComponent other : allCases<BarComponent>())
            EXPECT_EQ(Settings::isVisible(other), other != component || !canHide) << rawValue(component);
        Settings::setVisible(component, true);
    }
}
