#include "Fixture.h"

#include "base/PropertyList.h"
#include "dock/DirtyFlag.h"
#include "dock/DockBackup.h"
#include "dock/DockPrefs.h"
#include "dock/DriftWatch.h"
#include "dock/LaunchRepair.h"
#include "dock/RepairAgent.h"
#include "foundation/NSUserDefaults.h"
#include "settings/Settings.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

std::string contentOf(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(in), {} };
}

class DockTest : public DesktopTest {
protected:
    void SetUp() override
    {
        desk.pinnedApp("Mail");
        desk.pinnedApp("Notes");
        start();
        original_ = dock();
    }

    fs::path support() const { return root() / "Home/Library/Application Support"; }
    fs::path flag() const { return support() / "Vantry/dock-dirty.flag"; }
    fs::path backup() const { return support() / "Vantry/dock-backup.plist"; }
    fs::path safetyCopy() const { return support() / "Vantry-Recovery/dock-backup.plist"; }
    fs::path agent() const { return root() / "Home/Library/LaunchAgents/com.merrowen.vantry.repair.plist"; }

    Value dock() const { return *PropertyList::parse(contentOf(root() / "Preferences/com.apple.dock.plist")); }

    void writeFlag(const std::string& text) const
    {
        fs::create_directories(flag().parent_path());
        std::ofstream(flag()) << text;
    }

    /// The command lines of the tools since the last look, without the folders that they lie in.
    Lines tools()
    {
        Lines lines;
        for (const auto& call : calls().named("tool")) {
            std::string line = std::get<std::string>(*call.value);
            for (const std::string& noise : { std::string("/usr/bin/"), std::string("/bin/"), root().string() })
                for (auto place = line.find(noise); place != line.npos; place = line.find(noise))
                    line.erase(place, noise.size());
            lines.push_back(line);
        }
        calls().clear();
        return lines;
    }

    Value original_ = false;
};

const Lines deletions { "defaults delete com.apple.dock tilesize", "defaults delete com.apple.dock magnification",
    "defaults delete com.apple.dock autohide", "defaults delete com.apple.dock autohide-time-modifier",
    "defaults delete com.apple.dock autohide-delay", "defaults delete com.apple.dock orientation" };

Lines joined(Lines lines, const Lines& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

}

TEST_F(DockTest, EachChangeIsPreparedForACrashAndRunsItsToolsInOrder)
{
    const std::string folder = "/Home/Library/Application Support/Vantry/";
    const std::string user = std::to_string(::getuid());
    const Lines preparation { "defaults export com.apple.dock " + folder + "dock-backup.plist",
        "launchctl bootout gui/" + user + "/com.merrowen.vantry.repair",
        "launchctl bootstrap gui/" + user + " /Home/Library/LaunchAgents/com.merrowen.vantry.repair.plist" };
    const Lines gesture { "defaults write com.apple.AppleMultitouchTrackpad TrackpadThreeFingerVertSwipeGesture -int 2",
        "defaults write com.apple.AppleMultitouchTrackpad TrackpadFourFingerVertSwipeGesture -int 2",
        "defaults write com.apple.driver.AppleBluetoothMultitouch.trackpad TrackpadThreeFingerVertSwipeGesture -int 2",
        "defaults write com.apple.driver.AppleBluetoothMultitouch.trackpad TrackpadFourFingerVertSwipeGesture -int 2" };
    const Lines restoring
        = joined(deletions, { "defaults import com.apple.dock " + folder + "dock-backup.plist", "killall Dock" });
    struct Row {
        const char* name;
        std::function<void()> change;
        Lines expected;
        bool isDirty;
    };
    const Row rows[] = {
        { "behind the bar", [] { DockPrefs::keepDockBehindBar(63); },
            joined(preparation,
                { "defaults write com.apple.dock orientation -string bottom",
                    "defaults write com.apple.dock autohide -bool true",
                    "defaults write com.apple.dock magnification -bool false",
                    "defaults write com.apple.dock tilesize -int 1",
                    "defaults write com.apple.dock autohide-time-modifier -float 0", "killall Dock" }),
            true },
        { "recommended", DockPrefs::applyRecommended,
            { "defaults write com.apple.dock orientation -string bottom",
                "defaults write com.apple.dock autohide -bool true", "defaults write com.apple.dock tilesize -int 36",
                "killall Dock" },
            true },
        { "moved to the bar", DockPrefs::migrateToTaskbar,
            { "defaults write com.apple.dock persistent-apps -array", "killall Dock" }, true },
        { "restored", DockPrefs::restoreDock, restoring, false },
        { "restored in full", DockPrefs::restoreSystemDefaults, joined(restoring, gesture), false },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.change();
        EXPECT_EQ(tools(), row.expected);
        EXPECT_EQ(DockRepair::isDirty(), row.isDirty);
        EXPECT_TRUE(fs::exists(backup()) && fs::exists(safetyCopy()) && fs::exists(agent()));
        EXPECT_EQ(Settings::dockMigrated(), row.name == std::string("moved to the bar"));
        EXPECT_EQ(dock() == original_, !row.isDirty);
    }
    // The bar keeps the pins that it took over.
    EXPECT_EQ(
        Settings::extraPinnedPaths(), (Settings::Strings { "/Applications/Mail.app", "/Applications/Notes.app" }));
    EXPECT_EQ(Settings::pinnedNames().at("/Applications/Notes.app"), "Notes");
    EXPECT_EQ(world().agents().count("com.merrowen.vantry.repair"), 1u);
}

TEST_F(DockTest, TheDockIsAsSmallAsItIsToldAndComesBackAsItWas)
{
    DockPrefs::keepDockBehindBar(63);
    advance(0.2);
    EXPECT_TRUE(DockPrefs::isBehindBar());
    EXPECT_TRUE(world().dock().hides());
    EXPECT_EQ(world().dock().tileSize(), 1);
    DockPrefs::migrateToTaskbar();
    advance(0.2);
    EXPECT_TRUE(world().dock().tiles().empty());

    // A backup is taken once, and either copy of it serves.
    const std::string first = contentOf(backup());
    DockPrefs::applyRecommended();
    EXPECT_FALSE(DockPrefs::isBehindBar());
    EXPECT_EQ(contentOf(backup()), first);
    EXPECT_EQ(contentOf(safetyCopy()), first);
    fs::remove(backup());
    DockPrefs::restoreDock();
    advance(0.2);
    EXPECT_EQ(dock(), original_);
    EXPECT_EQ(world().dock().tiles().size(), 2u);
    EXPECT_FALSE(world().dock().hides());

    calls().clear();
    fs::remove(safetyCopy());
    writeFlag("1\n");
    Settings::dockMigrated.set(true);
    DockPrefs::restoreDock();
    EXPECT_TRUE(tools().empty()) << "without a backup nothing is put back";
    EXPECT_TRUE(DockRepair::isDirty() && Settings::dockMigrated());

    DockPrefs::keepDockBehindBar(63);
    fs::remove_all(support());
    DockPrefs::restoreSystemDefaults();
    EXPECT_EQ(dock().find("tilesize")->integer(), 48);
    EXPECT_EQ(dock().find("autohide")->boolean(), true);
    EXPECT_TRUE(Settings::dockMigrated());
}

TEST_F(DockTest, WhatIsBehindTheBarIsSmallAndHidden)
{
    struct Row {
        std::optional<Value> size;
        std::optional<Value> hides;
        bool isBehind;
    };
    const Row rows[] = { { 1, true, true }, { 2, true, false }, { 1, std::nullopt, false },
        { std::nullopt, true, false }, { 1, false, false }, { "1", true, false }, { 1, 1, false } };
    auto store = *NSUserDefaults::initWithSuiteName("com.apple.dock");
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        for (const auto& [key, value] : { std::pair("tilesize", row.size), { "autohide", row.hides } }) {
            if (value)
                store.setObject(*value, key);
            else
                store.removeObjectForKey(key);
        }
        EXPECT_EQ(DockPrefs::isBehindBar(), row.isBehind);
    }
}

TEST_F(DockTest, TheDriftWatchPutsTheDockBackEveryThreeSeconds)
{
    DockPrefs::keepDockBehindBar(63);
    DockPrefs::startDriftWatch(63);
    DockPrefs::startDriftWatch(36);
    calls().clear();
    advance(10);
    EXPECT_TRUE(tools().empty());

    auto store = *NSUserDefaults::initWithSuiteName("com.apple.dock");
    store.setObject(64, "tilesize");
    advance(3);
    EXPECT_EQ(std::ranges::count(tools(), "killall Dock"), 1);
    EXPECT_TRUE(DockPrefs::isBehindBar());

    Settings::manageDock.set(false);
    store.setObject(64, "tilesize");
    advance(10);
    EXPECT_TRUE(tools().empty());
    EXPECT_FALSE(DockPrefs::isBehindBar());
}

TEST_F(DockTest, TheFlagTellsACrashedRunFromALiveOne)
{
    const pid_t mail = world().launch(desk.applications.front());
    const std::string own = std::to_string(::getpid());
    world().launchOwnProgram(4242);
    struct Row {
        const char* name;
        std::string flag;
        bool isCrash;
    };
    const Row rows[] = {
        { "this process", own + "\n2026-03-01T09:30:00Z\n", false },
        { "another instance", "4242\n", false },
        { "behind an empty line", "\n4242\n", false },
        { "another program", std::to_string(mail) + "\n", true },
        { "nobody", "3999999\n", true },
        { "a letter behind the number", own + "x\n", true },
        { "more than the number range holds", "99999999999\n", true },
        { "empty", "", true },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        DockPrefs::keepDockBehindBar(63);
        writeFlag(row.flag);
        calls().clear();
        DockRepair::repairIfNeeded();
        EXPECT_EQ(DockRepair::isDirty(), !row.isCrash);
        EXPECT_EQ(dock() == original_, row.isCrash);
        EXPECT_EQ(tools().empty(), !row.isCrash);
        EXPECT_EQ(contentOf(flag()), row.isCrash ? "" : row.flag);
    }
    DockRepair::clearDirty();
    calls().clear();
    DockRepair::repairIfNeeded();
    EXPECT_TRUE(calls().named("tool").empty());

    DockRepair::markDirty();
    const std::string raised = contentOf(flag());
    EXPECT_TRUE(raised.starts_with(own + "\n20")) << raised;
    EXPECT_TRUE(raised.ends_with("Z\n")) << raised;
    advance(60);
    DockRepair::markDirty();
    EXPECT_EQ(contentOf(flag()), raised);
}

TEST_F(DockTest, ToolsAndFilesThatFailLoseNothing)
{
    struct Row {
        const char* name;
        std::function<void()> spoil;
        bool isBackedUp;
        bool isBehindBar;
    };
    const Row rows[] = {
        { "no export", [&] { world().faults().failingTools["export"] = 1; }, false, true },
        { "no such tool", [&] { world().faults().missingTools = { "/usr/bin/defaults" }; }, false, false },
        { "no agent", [&] { world().faults().missingTools = { "/bin/launchctl" }; }, true, true },
        { "a flag that can't be written", [&] { fs::create_directories(flag()); }, true, true },
        { "support folders that can't be made", [&] { std::ofstream(support()) << "a file"; }, false, true },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        world().faults() = {};
        fs::remove_all(support());
        fs::create_directories(support().parent_path());
        fs::remove(agent());
        row.spoil();
        DockPrefs::keepDockBehindBar(63);
        EXPECT_EQ(DockPrefs::hasBackup(), row.isBackedUp);
        EXPECT_EQ(DockPrefs::isBehindBar(), row.isBehindBar);
        EXPECT_EQ(dock().find("persistent-apps")->array()->size(), 2u);
        world().faults() = {};
        DockPrefs::restoreSystemDefaults();
        EXPECT_FALSE(DockPrefs::isBehindBar());
        std::ofstream(root() / "Preferences/com.apple.dock.plist") << PropertyList::xml(original_);
        NSUserDefaults::initWithSuiteName("com.apple.dock")->synchronize();
    }
}

TEST_F(DockTest, TheAgentIsInstalledOnceAndFormerOnesGo)
{
    const fs::path agents = agent().parent_path();
    DockRepair::removeLegacyAgents();
    EXPECT_TRUE(tools().empty());
    fs::create_directories(agents);
    for (const char* former : { "com.local.kelmora.repair", "com.merrowen.kelmora.repair" })
        std::ofstream(agents / (std::string(former) + ".plist")) << "<plist/>";
    DockRepair::removeLegacyAgents();
    EXPECT_EQ(tools().size(), 2u);
    EXPECT_TRUE(fs::is_empty(agents));

    DockRepair::installAgent();
    const fs::path script = support() / "Vantry/repair.sh";
    EXPECT_EQ(fs::status(script).permissions(), fs::perms(0755));
    const std::string folder = (support() / "Vantry").string();
    EXPECT_NE(contentOf(script).find("FLAG=\"" + folder + "/dock-dirty.flag\"\n"), std::string::npos);
    EXPECT_TRUE(contentOf(script).ends_with("\nrm -f \"$FLAG\""));
    const auto list = PropertyList::parse(contentOf(agent()));
    ASSERT_TRUE(list);
    EXPECT_EQ(*list->find("ProgramArguments"), Value(Value::Array { "/bin/bash", script.string() }));
    EXPECT_EQ(list->find("RunAtLoad")->boolean(), true);
    DockRepair::removeAgent();
    EXPECT_FALSE(DockRepair::isAgentInstalled() || fs::exists(script));
    EXPECT_TRUE(world().agents().empty());
}
