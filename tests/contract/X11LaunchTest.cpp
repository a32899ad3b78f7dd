// Ahead of the toolkit, whose keywords it uses as names.
#include "contract/BusObject.h"

#include "contract/X11Fixture.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

/// A program that writes down where and how it was started.
const std::string& reporter()
{
    static const std::string path = [] {
        writeAtHome("reporter",
            "#!/bin/sh\nprintf '%s|%s|%s|%s' \"$PWD\" \"${DESKTOP_STARTUP_ID%%-*}\" \"$VANTRY_TEST_OWN\" \"$*\" "
            "> \"$0.part\" && mv \"$0.part\" \"$0.out\"\n");
        std::filesystem::permissions(temporaryHome() + "/reporter", std::filesystem::perms::owner_all);
        return temporaryHome() + "/reporter";
    }();
    return path;
}

/// The startup messages that the root is sent, put together.
class StartupMessages {
public:
    explicit StartupMessages(X11DesktopUnderTest& under)
        : under_(under)
    {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(under.connection(), under.root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(under.connection());
    }

    /// What has come by now, each message ended by a line feed.
    const std::string& text()
    {
        const xcb_atom_t begin = under_.atom("_NET_STARTUP_INFO_BEGIN");
        const xcb_atom_t more = under_.atom("_NET_STARTUP_INFO");
        while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event {
            xcb_poll_for_event(under_.connection()), std::free }) {
            if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE)
                continue;
            const auto& part = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            if (part.type != begin && part.type != more)
                continue;
            for (const std::uint8_t byte : part.data.data8) {
                text_ += byte == 0 ? '\n' : static_cast<char>(byte);
                if (byte == 0)
                    break;
            }
        }
        return text_;
    }

private:
    X11DesktopUnderTest& under_;
    std::string text_;
};

}

TEST_F(X11, AProgramIsStartedAsItsEntrySaysAndABrokenOneIsToldAndNothingElse)
{
    setenv("VANTRY_TEST_OWN", "set by this program", 1);
    TestEntries entries;
    std::filesystem::create_directories(temporaryHome() + "/work");
    const std::string here = std::filesystem::current_path();
    const std::string work = temporaryHome() + "/work";
    const struct {
        const char* what;
        std::string lines;
        /// None where it can't be started.
        std::optional<std::string> report;
    } rows[] {
        { "plain", "Exec=" + reporter() + " --file %F \"two words\"\n", here + "|||--file two words" },
        { "with a folder", "Exec=" + reporter() + "\nPath=" + work + '\n', work + "|||" },
        { "that tells of its start", "Exec=" + reporter() + "\nStartupNotify=true\n", here + "|vantry||" },
        { "in a terminal", "Exec=" + reporter() + " x\nTerminal=true\nPath=" + work + '\n', work + "|||x" },
        { "that isn't there", "Exec=/no/such/program\n", {} },
        { "with an open quote", "Exec=\"unfinished\n", {} },
        { "with an empty command", "Exec=\n", {} },
        { "without one", "", {} },
    };
    int number = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::string name = "Test start " + std::to_string(++number);
        entries.write("t-start-" + std::to_string(number), "Name=" + name + '\n' + row.lines);
        std::filesystem::remove(reporter() + ".out");
        testing::internal::CaptureStderr();
        EXPECT_EQ(applications().open("/Applications/" + name + ".app"), row.report.has_value());
        EXPECT_EQ(testing::internal::GetCapturedStderr().find("can't be opened") == std::string::npos,
            row.report.has_value());
        EXPECT_TRUE(settle([&] { return contentsOf(reporter() + ".out") == row.report.value_or(""); })) << contentsOf(
            reporter() + ".out") << "\nrather than\n" << row.report.value_or("");
    }
    unsetenv("VANTRY_TEST_OWN");
}

TEST_F(X11, AStartIsAnnouncedAndTakenBackWhenItFails)
{
    StartupMessages messages(*under_);
    TestEntries entries;
    entries.write("t-announced",
        "Name=Test \"announced\"\nIcon=some-icon\nStartupWMClass=Some\nStartupNotify=true\nExec=" + reporter() + '\n');
    ASSERT_TRUE(applications().open("/Applications/Test \"announced\".app"));
    EXPECT_TRUE(settle([&] { return messages.text().ends_with('\n'); }));
    EXPECT_TRUE(messages.text().starts_with("new: ID=\"vantry-")) << messages.text();
    EXPECT_NE(messages.text().find(" NAME=\"Test \\\"announced\\\"\" SCREEN=0 BIN=\"" + reporter()
                  + "\" ICON=\"some-icon\" WMCLASS=\"Some\"\n"),
        std::string::npos)
        << messages.text();
    EXPECT_EQ(messages.text().find("_TIME0\""), std::string::npos);

    entries.write(
        "t-nowhere", "Name=Test nowhere\nStartupNotify=true\nPath=/no/such/folder\nExec=" + reporter() + '\n');
    EXPECT_FALSE(applications().open("/Applications/Test nowhere.app"));
    EXPECT_TRUE(settle([&] { return messages.text().find("remove: ID=\"vantry-") != std::string::npos; }));
}

TEST_F(X11, AProgramOnTheBusIsActivatedThere)
{
    if (!std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        GTEST_SKIP() << "no session bus";
    TestEntries entries;
    entries.write("org.test.Activatable",
        "Name=Test activatable\nDBusActivatable=true\nStartupNotify=true\nExec=" + reporter() + " by command\n");

    std::string startupId;
    const BusObject activatable("org.test.Activatable", "/org/test/Activatable",
        "<interface name='org.freedesktop.Application'><method name='Activate'><arg type='a{sv}' direction='in'/>"
        "</method></interface>",
        [&](GVariant* arguments, GDBusMethodInvocation* call) {
            GVariant* data = g_variant_get_child_value(arguments, 0);
            const char* id = nullptr;
            if (g_variant_lookup(data, "desktop-startup-id", "&s", &id))
                startupId = id;
            g_variant_unref(data);
            g_dbus_method_invocation_return_value(call, nullptr);
        });

    EXPECT_TRUE(applications().open("/Applications/Test activatable.app"));
    EXPECT_TRUE(settle([&] {
        g_main_context_iteration(nullptr, FALSE);
        return startupId.starts_with("vantry-");
    })) << startupId;
    EXPECT_EQ(contentsOf(reporter() + ".out").find("by command"), std::string::npos)
        << "its command line is for desktops without a bus";
}
