#include "ModelTest.h"

#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/PreferenceDomain.h"
#include "settings/Settings.h"

namespace {

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

    /// That it has its default, is stored under its key, and tells of each write.
    template <class T>
    void check(const char* key, const Settings::Setting<T>& setting, const T& fallback, const T& other)
    {
        SCOPED_TRACE(key);
        EXPECT_EQ(setting(), fallback);
        store(key, Value::Dictionary { { "unknown", 1 } });
        // A boolean that is present but none reads as false, whatever its default.
        if constexpr (std::is_same_v<T, bool>)
            EXPECT_FALSE(setting());
        else
            EXPECT_EQ(setting(), fallback);
        changes_ = 0;
        setting.set(other);
        setting.set(other);
        EXPECT_EQ(changes_, 2);
        EXPECT_TRUE(log_.back().starts_with(std::string("setting ") + key)) << log_.back();
        EXPECT_EQ(NSUserDefaults::standard().objectForKey(key), Settings::Stored<T>::value(other));
        EXPECT_EQ(setting(), other);
    }

    NSNotificationCenter::Token observer_;
    int changes_ = 0;
};

}

TEST_F(SettingsTest, EachKindHasItsDefaultIsStoredUnderItsKeyAndTellsOfEachWrite)
{
    check("showTrash", Settings::showTrash, true, false);
    check("floatingBar", Settings::floatingBar, false, true);
    check("barSize", Settings::barSize, BarSize::large, BarSize::small);
    check<std::string>("barTintHex", Settings::barTintHex, "1A1C22", "FFFFFF");
    check<Settings::Strings>("hiddenKeys", Settings::hiddenKeys, {}, { "b", "a" });
    check<Settings::StringMap>("pinnedNames", Settings::pinnedNames, {}, { { "/Applications/A.app", "A" } });

    store("barSize", "gigantic");
    EXPECT_EQ(Settings::barSize(), BarSize::large);
    // The raw value isn't the name that the language allows for the case.
    store("grouping", "auto");
    EXPECT_EQ(Settings::grouping(), WindowGrouping::automatic);
    store("pinnedNames", Value::Dictionary { { "/a", "A" }, { "/b", 2 } });
    EXPECT_TRUE(Settings::pinnedNames().empty());
    store("hiddenKeys", Value::Array { "a", 1 });
    EXPECT_TRUE(Settings::hiddenKeys().empty());
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
    };
    for (const auto& test : cases) {
        store("componentOrder", test.stored);
        std::string read;
        for (const BarComponent component : Settings::componentOrder())
            read += (read.empty() ? "" : " ") + std::string(rawValue(component));
        EXPECT_EQ(read, test.read) << description(test.stored);
    }
    auto order = Settings::componentOrder();
    std::ranges::reverse(order);
    Settings::componentOrder.set(order);
    EXPECT_EQ(Settings::componentOrder(), order);
}
