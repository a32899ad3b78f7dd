#include "Fixture.h"

#include "app/AppDelegate.h"
#include "base/PropertyList.h"
#include "dock/DirtyFlag.h"
#include "dock/DockPrefs.h"
#include "dock/LoginItem.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSUserDefaults.h"
#include "settings/Migration.h"
#include "settings/Settings.h"

#include <unistd.h>

#include <fstream>

namespace {

namespace fs = std::filesystem;

using Status = host::LoginItem::Status;

class LaunchTest : public DesktopTest {
protected:
    void writeDomain(const std::string& name, const Value::Dictionary& values) const
    {
        fs::create_directories(root() / "Preferences");
        std::ofstream(root() / "Preferences" / (name + ".plist")) << PropertyList::xml(values);
    }

    bool isThere(const std::string& path) const { return fs::exists(root() / path); }
};

}

TEST_F(LaunchTest, FormerSettingsAreTakenOverOnceAndWholly)
{
    struct Row {
        const char* name;
        Value::Dictionary present;
        Value::Dictionary first;
        Value::Dictionary second;
        /// Empty for none.
        std::string expectedSize;
        bool isFirstLeft;
        bool isSecondLeft;
    };
    const Value::Dictionary small { { "barSize", "small" }, { "forgotten", Value::Array { 1, "x" } } };
    const Value::Dictionary medium { { "barSize", "medium" } };
    const Row rows[] = {
        { "nothing former", {}, {}, {}, "", false, false },
        { "a store in use", { { "barSize", "large" } }, small, medium, "large", true, true },
        { "both", { { "barEdge", "top" } }, small, medium, "small", false, true },
        { "the first is empty", {}, Value::Dictionary(), medium, "medium", true, false },
    };
    start();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        writeDomain("com.merrowen.vantry", row.present);
        fs::remove(root() / "Preferences/com.merrowen.kelmora.plist");
        fs::remove(root() / "Preferences/com.local.kelmora.plist");
        if (!row.first.empty() || row.isFirstLeft)
            writeDomain("com.merrowen.kelmora", row.first);
        if (!row.second.empty())
            writeDomain("com.local.kelmora", row.second);
        Settings::migrateLegacyState();
        const auto store = NSUserDefaults::standard();
        EXPECT_EQ(store.stringForKey("barSize").value_or(""), row.expectedSize);
        EXPECT_EQ(store.objectForKey("forgotten").has_value(), row.expectedSize == "small");
        EXPECT_EQ(store.objectForKey("barEdge").has_value(), !row.present.empty() && !row.present.find("barSize"));
        EXPECT_EQ(isThere("Preferences/com.merrowen.kelmora.plist"), row.isFirstLeft);
        EXPECT_EQ(isThere("Preferences/com.local.kelmora.plist"), row.isSecondLeft);
    }

    const fs::path support = root() / "Home/Library/Application Support";
    for (const char* folder : { "Kelmora", "Kelmora-Recovery", "Vantry-Recovery" }) {
        fs::create_directories(support / folder);
        std::ofstream(support / folder / "file") << folder;
    }
    Settings::migrateLegacyState();
    EXPECT_TRUE(fs::exists(support / "Vantry/file"));
    EXPECT_FALSE(fs::exists(support / "Kelmora"));
    EXPECT_TRUE(fs::exists(support / "Kelmora-Recovery/file")) << "a folder that exists is never overwritten";
}

TEST_F(LaunchTest, TheLoginItemFollowsTheProgramAndTheUser)
{
    desk.processes.push_back({ .pid = ::getpid(),
        .name = "Vantry",
        .bundleIdentifier = "com.merrowen.vantry",
        .bundlePath = "/Moved/Vantry.app",
        .icon = {},
        .policy = host::ActivationPolicy::accessory,
        .faults = {} });
    start();
    struct Row {
        const char* name;
        Status status;
        const char* stored;
        const char* fails;
        Status after;
        const char* storedAfter;
    };
    constexpr const char* here = "/Moved/Vantry.app";
    constexpr const char* there = "/Applications/Vantry.app";
    const Row rows[] = {
        { "never wanted", Status::notRegistered, nullptr, "", Status::notRegistered, nullptr },
        { "in order", Status::enabled, here, "", Status::enabled, here },
        { "moved", Status::enabled, there, "", Status::enabled, here },
        { "registered by another", Status::enabled, nullptr, "", Status::enabled, here },
        { "switched off by the user", Status::requiresApproval, here, "", Status::enabled, here },
        { "removed by the user", Status::notRegistered, here, "", Status::enabled, here },
        { "refused", Status::enabled, there, "register", Status::notRegistered, there },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        world().setLoginItem(row.status);
        world().faults().failingLoginItem = { { row.fails, -1 } };
        auto store = NSUserDefaults::standard();
        store.removeObjectForKey("loginItemBundlePath");
        if (row.stored)
            store.setObject(row.stored, "loginItemBundlePath");
        LoginItem::reconcile();
        EXPECT_EQ(world().loginItem(), row.after);
        EXPECT_EQ(
            store.stringForKey("loginItemBundlePath").value_or("none"), row.storedAfter ? row.storedAfter : "none");
    }

    int told = 0;
    const auto observer = NSNotificationCenter::defaultCenter().addObserver(
        Settings::didChange, [&](const NSNotification&) { ++told; });
    world().faults() = {};
    Settings::launchAtLogin.set(true);
    EXPECT_TRUE(Settings::launchAtLogin());
    Settings::launchAtLogin.set(false);
    EXPECT_FALSE(NSUserDefaults::standard().objectForKey("loginItemBundlePath"));
    EXPECT_FALSE(Settings::launchAtLogin());
    EXPECT_EQ(told, 2);
    NSNotificationCenter::defaultCenter().removeObserver(observer);
}

TEST_F(LaunchTest, AStartTakesTheDocksPlaceAndAQuitGivesItBack)
{
    struct Row {
        const char* name;
        bool manages;
        bool restores;
        bool isMigrated;
        bool isGestureOn;
        bool isBehindBar;
        bool isRestored;
    };
    const Row rows[] = {
        { "managed", true, true, false, true, true, true },
        { "managed, and kept so", true, false, false, true, true, false },
        { "not managed", false, true, false, true, false, false },
        { "the Dock's applications were moved", false, true, true, true, false, true },
        { "the gesture was off", false, true, false, false, false, false },
    };
    desk.pinnedApp("Mail");
    start();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Settings::manageDock.set(row.manages);
        Settings::restoreOnQuit.set(row.restores);
        Settings::dockMigrated.set(row.isMigrated);
        auto trackpad = *NSUserDefaults::initWithSuiteName("com.apple.AppleMultitouchTrackpad");
        trackpad.setObject(row.isGestureOn ? 2 : 0, "TrackpadThreeFingerVertSwipeGesture");
        {
            AppDelegate delegate(NSApplication::sharedApplication());
            delegate.applicationDidFinishLaunching();
            EXPECT_EQ(DockPrefs::isBehindBar(), row.isBehindBar);
            EXPECT_EQ(DockRepair::isDirty(), row.isBehindBar);
            trackpad.synchronize();
            EXPECT_TRUE(DockPrefs::missionControlGestureEnabled());
            calls().clear();
            delegate.applicationWillTerminate();
        }
        EXPECT_EQ(!calls().named("tool").empty(), row.isRestored);
        EXPECT_EQ(DockRepair::isDirty(), row.isBehindBar && !row.isRestored);
        // The next start is another process.
        if (DockRepair::isDirty())
            std::ofstream(root() / "Home/Library/Application Support/Vantry/dock-dirty.flag") << "3999999\n";
        settle();
    }
}
