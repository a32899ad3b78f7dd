#include "Fixture.h"

#include "app/AppDelegate.h"
#include "base/PropertyList.h"
#include "dock/DockPrefs.h"
#include "dock/LoginItem.h"
#include "dock/Uninstaller.h"
#include "foundation/NSUserDefaults.h"
#include "settings/Settings.h"

#include <fstream>

namespace {

namespace fs = std::filesystem;

class UninstallTest : public DesktopTest {
protected:
    UninstallTest()
    {
        Uninstaller::endProcess = [this] { ++ends_; };
    }
    ~UninstallTest() override { Uninstaller::endProcess = nullptr; }

    fs::path support() const { return root() / "Home/Library/Application Support"; }

    Value dock() const
    {
        std::ifstream in(root() / "Preferences/com.apple.dock.plist", std::ios::binary);
        return *PropertyList::parse(std::string(std::istreambuf_iterator<char>(in), {}));
    }

    int ends_ = 0;
};

}

TEST_F(UninstallTest, WhatWillBeUndoneIsNamed)
{
    desk.pinnedApp("Mail");
    start();
    Settings::manageDock.set(false);
    EXPECT_EQ(Uninstaller::summary(), "\u2022 Vantry's settings will be deleted");
    Settings::manageDock.set(true);
    DockPrefs::migrateToTaskbar();
    DockPrefs::setMissionControlGesture(false);
    Settings::launchAtLogin.set(true);
    EXPECT_EQ(Uninstaller::summary(),
        "\u2022 Your Dock apps will be put back\n\u2022 Dock size and auto-hide will be restored\n"
        "\u2022 The Mission Control gesture will be re-enabled\n\u2022 Launch at login will be removed\n"
        "\u2022 Vantry's settings will be deleted");
}

TEST_F(UninstallTest, EverythingIsUndoneWhateverIsMissingOrInTheWay)
{
    struct Row {
        const char* name;
        void (*spoil)(const fs::path& root, embedded::World& world);
        bool isDockBack;
    };
    const Row rows[] = {
        { "all there", [](const fs::path&, embedded::World&) {}, true },
        { "no support folder",
            [](const fs::path& root, embedded::World&) {
                fs::remove_all(root / "Home/Library/Application Support/Vantry");
            },
            true },
        { "no file at all", [](const fs::path& root, embedded::World&) { fs::remove_all(root / "Home/Library"); },
            false },
        { "a login item that can't be removed",
            [](const fs::path&, embedded::World& world) {
                world.faults().failingLoginItem = { { "unregister", -1 } };
            },
            true },
    };
    desk.pinnedApp("Mail");
    for (const Row& row : rows) {
        for (const bool reveals : { true, false }) {
            SCOPED_TRACE(std::string(row.name) + (reveals ? ", shown" : ""));
            start();
            const Value before = dock();
            DockPrefs::keepDockBehindBar(63);
            DockPrefs::migrateToTaskbar();
            Settings::launchAtLogin.set(true);
            fs::create_directories(support() / "Kelmora-Recovery/deep");
            row.spoil(root(), world());
            calls().clear();
            ends_ = 0;

            Uninstaller::run(reveals);
            EXPECT_EQ(ends_, 1);
            for (const char* folder : { "Vantry", "Vantry-Recovery", "Kelmora", "Kelmora-Recovery" })
                EXPECT_FALSE(fs::exists(support() / folder)) << folder;
            EXPECT_FALSE(fs::exists(root() / "Preferences/com.merrowen.vantry.plist"));
            EXPECT_FALSE(fs::exists(root() / "Home/Library/LaunchAgents/com.merrowen.vantry.repair.plist"));
            EXPECT_TRUE(world().agents().empty());
            EXPECT_EQ(dock() == before, row.isDockBack);
            EXPECT_EQ(calls().named("reveal").size(), reveals ? 1u : 0u);
            stop();
            fs::remove_all(root());
            fs::create_directories(root());
        }
    }
}
