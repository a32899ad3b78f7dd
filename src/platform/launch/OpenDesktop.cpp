#include "host/OpenDesktop.h"

#include "base/PreferenceFile.h"
#include "base/RunLoop.h"
#include "embedded/EmbeddedDesktop.h"
#include "embedded/ScenarioFile.h"
#include "launch/CommandLine.h"
#include "x11/X11Desktop.h"

#include <QApplication>
#include <QPixmapCache>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

enum ExitStatus { failed = 1, usageFault = 2 };

[[noreturn]] void end(ExitStatus status, const std::string& reason)
{
    std::fprintf(stderr, "vantry: %s\n", reason.c_str());
    std::exit(status);
}

CommandLine readCommandLine()
{
    const auto parsed = CommandLine::parse(processArguments());
    if (const auto* error = std::get_if<CommandLine::Error>(&parsed))
        end(usageFault, error->reason + "\n" + CommandLine::usage());
    const auto& line = std::get<CommandLine>(parsed);
    if (!line.help && !line.version)
        return line;
    std::fputs((line.help ? CommandLine::usage() : CommandLine::versionText()).c_str(), stdout);
    std::exit(EXIT_SUCCESS);
}

/// KiB. The toolkit's style keeps what it has drawn of every menu that ever was, up to this.
constexpr int styleCacheLimit = 512;

/// What the toolkit reads from it at its start. Nothing else may run by then: another thread that reads the environment
/// meanwhile could end the program.
void setEnvironment(const char* platform)
{
    if (platform)
        qputenv("QT_QPA_PLATFORM", platform);
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    // Its pixels are the display's; the layer fits points to them itself.
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    for (const char* factor : { "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS" })
        qunsetenv(factor);
}

/// The toolkit, with none of what a taskbar has no use for: its start is most of the program's.
void startToolkit()
{
    static int count = 1;
    static char name[] = "vantry";
    static char* arguments[] = { name, nullptr };
    new QApplication(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmapCache::setCacheLimit(styleCacheLimit);
    QApplication::setDesktopFileName("vantry");
}

std::unique_ptr<host::Desktop> openX11()
{
    setEnvironment("xcb");
    std::string reason;
    auto desktop = x11::openX11Desktop(reason);
    if (!desktop)
        end(failed, reason + "\nWithout DISPLAY, or with --embedded, it starts in a desktop of its own.");
    startToolkit();
    return desktop;
}

embedded::Scenario readScenario(const std::optional<std::string>& file)
{
    if (!file)
        return embedded::defaultScenario();
    const auto text = readFile(*file);
    if (!text)
        end(usageFault, *file + ": can't be read");
    auto parsed = embedded::parseScenario(*text);
    if (const auto* error = std::get_if<embedded::ScenarioError>(&parsed))
        end(usageFault, *file + ": line " + std::to_string(error->line) + ": " + error->reason);
    return std::get<embedded::Scenario>(std::move(parsed));
}

/// Where the embedded desktop keeps its files (XDG Base Directory: state).
std::string sessionFolder()
{
    const auto variable = [](const char* name) -> std::string {
        const char* value = std::getenv(name);
        return value ? value : "";
    };
    const std::string state = variable("XDG_STATE_HOME");
    return (state.empty() ? variable("HOME") + "/.local/state" : state) + "/vantry/embedded";
}

/// Long enough after the start for every bar to have been painted.
constexpr double pictureDelay = 0.5;

void writePicture(embedded::EmbeddedDesktop& desktop, const std::string& file)
{
    if (!desktop.savePicture(file))
        end(failed, file + ": the picture can't be written");
    std::printf("A picture of the embedded desktop is in %s.\n"
                "To use it by hand, start an X server and set DISPLAY, or name a Qt platform that can be seen:\n"
                "    QT_QPA_PLATFORM=vnc ./run --embedded    (then connect a VNC viewer to port 5900)\n",
        std::filesystem::absolute(file).c_str());
    std::fflush(stdout);
    desktop.onLost("the picture is written, that was all");
}

std::unique_ptr<host::Desktop> openEmbedded(const CommandLine& line)
{
    const embedded::Scenario scenario = readScenario(line.scenario);
    const bool unseen = qgetenv("DISPLAY").isEmpty() && qgetenv("QT_QPA_PLATFORM").isEmpty();
    const bool isForPicture = unseen || line.picture;
    setEnvironment(isForPicture ? "offscreen" : nullptr);
    startToolkit();

    // One that is there just for its picture is in nobody's way, and so has files of its own.
    auto desktop
        = std::make_unique<embedded::EmbeddedDesktop>(scenario, sessionFolder() + (isForPicture ? "-picture" : ""));
    if (!isForPicture)
        desktop->claimSession();
    desktop->show();
    if (isForPicture) {
        const std::string file = line.picture.value_or("vantry.png");
        desktop->onShown = [raw = desktop.get(), file] {
            RunLoop::main().schedule(pictureDelay, [raw, file] { writePicture(*raw, file); });
        };
    }
    return desktop;
}

}

host::Desktop& host::openDesktop()
{
    const CommandLine line = readCommandLine();
    if (line.run)
        qputenv(line.run->first.c_str(), QByteArray::fromStdString(line.run->second));
    const bool onX11 = !line.embedded && !qgetenv("DISPLAY").isEmpty();
    static const std::unique_ptr<Desktop> desktop = onX11 ? openX11() : openEmbedded(line);
    return *desktop;
}
