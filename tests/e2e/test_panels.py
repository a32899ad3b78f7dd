"""The desktop's own panel in the Dock's place: read into the Dock's domain, hidden behind the bar, and given back exactly.

Each kind runs for real. It is judged by its own tool, and driven by the platform's tools as scripts use them."""

import functools
import os
import plistlib
import shutil
import signal
import subprocess
import time
import unittest

from session import PROGRAM, Session, eventually

DOCK = "com.apple.dock"
BEHIND_THE_BAR = (("orientation", "-string", "bottom"), ("autohide", "-bool", "true"), ("magnification", "-bool", "false"),
                  ("tilesize", "-int", "1"), ("autohide-time-modifier", "-float", "0"))


class Settings:
    """GSettings, by its own tool. What isn't set is told by the backend's file alone."""

    def __init__(self, schema, path, **variables):
        self.place, self.path, self.variables = f"{schema}:{path}", path, variables

    def run(self, session, *arguments):
        return subprocess.run(["gsettings", *arguments], env=session.environment, capture_output=True, text=True,
                              check=True).stdout.strip()

    def set(self, session, key, value):
        self.run(session, "set", self.place, key, value)

    def get(self, session, key):
        return self.run(session, "get", self.place, key)

    def own(self, session):
        """What is set, as the backend keeps it."""
        if self.variables:
            try:
                with open(os.path.join(session.environment["XDG_CONFIG_HOME"], "glib-2.0/settings/keyfile"),
                          encoding="utf-8") as file:
                    group = file.read().partition(f"[{self.path.strip('/')}]\n")[2].partition("\n\n")[0]
            except FileNotFoundError:
                return []
        else:
            group = subprocess.run(["dconf", "dump", self.path], env=session.environment, capture_output=True, text=True,
                                   check=True).stdout
        return sorted(line for line in group.splitlines() if "=" in line)


class Plank(Settings):
    command, size, hides, smallest, hidden = ["plank"], "icon-size", "hide-mode", "24", "'auto'"
    pins = ["l3afpad", "featherpad"]

    def __init__(self):
        super().__init__("net.launchpad.plank.dock.settings", "/net/launchpad/plank/docks/dock1/")

    def launchers(self, session):
        return os.path.join(session.environment["XDG_CONFIG_HOME"], "plank/dock1/launchers")

    def prepare(self, session):
        os.makedirs(self.launchers(session))
        for name, text in {"l3afpad": "file:///usr/share/applications/l3afpad.desktop", "clock": "docklet://clock",
                           "featherpad": "file:///usr/share/applications/featherpad.desktop"}.items():
            with open(os.path.join(self.launchers(session), name + ".dockitem"), "w", encoding="ascii") as file:
                file.write(f"[PlankDockItemPreferences]\nLauncher={text}\n")
        self.set(session, "dock-items", "['l3afpad.dockitem', 'clock.dockitem', 'featherpad.dockitem']")
        self.set(session, "hide-mode", "window-dodge")

    def state(self, session):
        files = {}
        for name in os.listdir(self.launchers(session)):
            with open(os.path.join(self.launchers(session), name), encoding="ascii") as file:
                files[name] = file.read()
        return self.own(session), files

    def shows(self, session):
        """The programs that are pinned in it."""
        return [name for name in ("l3afpad", "featherpad") if name + ".dockitem" in self.get(session, "dock-items")]


class Mate(Settings):
    command, size, hides, smallest, hidden, pins = ["mate-panel"], "size", "auto-hide", "12", "true", []

    def __init__(self):
        super().__init__("org.mate.panel.toplevel", "/org/mate/panel/toplevels/bottom/", GSETTINGS_BACKEND="keyfile")

    def prepare(self, session):
        pass

    def state(self, session):
        # Where it lies along the edge it works out by itself.
        return [line for line in self.own(session) if not line.startswith("y")]


class Xfce:
    command, size, hides, smallest, hidden, pins = ["xfce4-panel", "--disable-wm-check"], "size", "autohide-behavior", "16", "2", []
    variables = {}

    def query(self, session, *arguments):
        return subprocess.run(["xfconf-query", "-c", "xfce4-panel", *arguments], env=session.environment,
                              capture_output=True, text=True, check=False).stdout.strip()

    def prepare(self, session):
        for arguments in (("/panels", "-a", "-t", "int", "-s", "1", "-t", "int", "-s", "2"),
                          ("/panels/panel-1/position", "-t", "string", "-s", "p=6;x=0;y=0"),
                          ("/panels/panel-1/length", "-t", "uint", "-s", "100"),
                          ("/panels/panel-2/position", "-t", "string", "-s", "p=10;x=0;y=0"),
                          ("/panels/panel-2/length", "-t", "uint", "-s", "100"),
                          ("/panels/panel-2/size", "-t", "uint", "-s", "40")):
            self.query(session, "-n", "-p", *arguments)

    def set(self, session, key, value):
        self.query(session, "-p", "/panels/panel-2/" + key, "-n", "-t", "uint", "-s", value)

    def get(self, session, key):
        return self.query(session, "-p", "/panels/panel-2/" + key)

    def state(self, session):
        return self.query(session, "-lv", "-p", "/panels")


class Lxqt:
    command, size, hides, smallest, hidden, pins = ["lxqt-panel"], "panelSize", "hidable", "16", "true", []
    variables = {"QT_QPA_PLATFORM": "xcb"}

    def file(self, session):
        return os.path.join(session.environment["XDG_CONFIG_HOME"], "lxqt/panel.conf")

    def prepare(self, session):
        os.makedirs(os.path.dirname(self.file(session)))
        with open(self.file(session), "w", encoding="ascii") as file:
            file.write("[General]\n__userfile__=true\npanels=panel1\n\n[panel1]\ndesktop=0\nplugins=\nposition=Bottom\n")

    def state(self, session):
        with open(self.file(session), encoding="ascii") as file:
            return [line for line in file.read().splitlines() if line]

    def get(self, session, key):
        return next((line.partition("=")[2] for line in self.state(session) if line.startswith(key + "=")), "")


KINDS = (Plank, Xfce, Mate, Lxqt)


class PanelSession(Session):
    """A session with a panel of a kind on the bar's edge."""

    def __init__(self, kind):
        super().__init__(has_installed_programs=True)
        self.kind = kind()

    def __enter__(self):
        super().__enter__()
        self.environment.update(self.kind.variables)
        self.kind.prepare(self)
        self.start_panel()
        return self

    def start_panel(self):
        self.panel = self.start(*self.kind.command)
        eventually(lambda: self.panel_windows() and self.settled(), "the panel is on the screen", 20)

    def settled(self):
        """Whether it has written what it writes at its start."""
        state = self.kind.state(self)
        time.sleep(0.6)
        return state == self.kind.state(self)

    def panel_windows(self):
        return [window for window in self.clients()
                if "_NET_WM_WINDOW_TYPE_DOCK" in self.atoms(window, "_NET_WM_WINDOW_TYPE")
                and self.class_of(window)[1].lower() == self.kind.command[0]]

    def tool(self, name, *arguments, through=()):
        return subprocess.run([*through, os.path.join(os.path.dirname(PROGRAM), "vantry-" + name), *arguments],
                              env=self.environment, capture_output=True, text=True, timeout=30, check=False)

    def relaunch(self):
        result = self.tool("killall", "Dock")
        assert result.returncode == 0, result.stderr
        return result

    def dock(self):
        with open(self.preferences(DOCK), "rb") as file:
            return plistlib.load(file)

    def labels(self):
        return [tile["tile-data"]["file-label"].lower() for tile in self.dock()["persistent-apps"]][1:]

    def keep_behind_bar(self):
        for arguments in BEHIND_THE_BAR:
            self.tool("defaults", "write", DOCK, *arguments)

    def is_hidden(self):
        return (self.kind.get(self, self.kind.hides), self.kind.get(self, self.kind.size)) == \
            (self.kind.hidden, self.kind.smallest)

    def backup(self):
        return os.path.join(self.folder, "backup.plist")

    def restore(self):
        self.tool("defaults", "import", DOCK, self.backup())
        self.relaunch()

    def take_in(self):
        """Has the program tell of the panel, and keeps that."""
        self.write_settings(manageDock=False)
        self.start_bar()
        eventually(lambda: "vantry-panel" in self.dock(), "the domain tells of the panel")
        self.tool("defaults", "export", DOCK, self.backup())


def each(*kinds):
    """Has a test run in a session with each of those panels that is installed."""

    def wrap(test):
        @functools.wraps(test)
        def run(self):
            for kind in kinds:
                if shutil.which(kind.command[0]):
                    with self.subTest(kind.__name__), PanelSession(kind) as session:
                        test(self, session, session.kind)
        return run
    return wrap


class PanelTest(unittest.TestCase):
    maxDiff = None

    @each(*KINDS)
    def test_it_is_read_hidden_behind_the_bar_and_given_back_exactly(self, session, kind):
        before = kind.state(session)
        session.take_in()
        self.assertEqual(kind.state(session), before, "reading changes nothing")
        told = session.dock()
        self.assertIs(told["autohide"], False)
        self.assertEqual(session.labels() if kind.pins else kind.pins, kind.pins)

        session.keep_behind_bar()
        session.relaunch()
        eventually(session.is_hidden, "it is hidden and as small as it can be")
        time.sleep(0.5)
        self.assertEqual((session.dock()["tilesize"], session.dock()["autohide"]), (1, True),
                         "and the domain goes on saying what was asked for")
        if kind.pins:
            session.tool("defaults", "write", DOCK, "persistent-apps", "-array")
            session.relaunch()
            time.sleep(1)
            self.assertEqual((kind.shows(session), session.dock()["persistent-apps"]), ([], []))
            self.assertIn("clock.dockitem", kind.get(session, "dock-items"), "what isn't a program stays")
        eventually(session.panel_windows, "it still runs")

        session.restore()
        time.sleep(1)
        self.assertEqual(kind.state(session), before)
        self.assertEqual(session.dock(), told)
        self.assertFalse(os.path.exists(session.preferences("com.merrowen.vantry.panel")))

    @each(*KINDS)
    def test_uninstalling_gives_it_back_and_leaves_nothing(self, session, kind):
        before = kind.state(session)
        session.write_settings(restoreOnQuit=False)
        program = session.start_bar()
        eventually(session.is_hidden, "it is behind the bar")
        program.terminate()
        program.wait(5)
        self.assertTrue(session.is_hidden(), "and stays there, as was asked for")
        self.assertEqual(session.run(env={"BAR_UNINSTALL": "1"}).returncode, 0)
        eventually(lambda: kind.state(session) == before, "it is as it was")
        home = session.environment["HOME"]
        left = [os.path.relpath(os.path.join(folder, name), home) for folder, _, names in os.walk(home) for name in names]
        self.assertEqual([file for file in left if "vantry" in file.lower()], [])

    @each(Plank, Xfce, Mate)
    def test_what_the_user_chooses_meanwhile_is_his_own(self, session, kind):
        session.take_in()
        kind.set(session, kind.size, "50")
        eventually(lambda: session.dock()["tilesize"] == 50, "a size chosen before is read")
        before = kind.state(session)
        session.keep_behind_bar()
        session.relaunch()
        kind.set(session, kind.size, "60")
        eventually(lambda: session.dock()["tilesize"] == 60, "a size chosen while hidden is read too")
        self.assertTrue(session.dock()["autohide"], "and it alone")
        session.keep_behind_bar()
        session.relaunch()
        eventually(session.is_hidden, "it can be hidden again")
        session.restore()
        self.assertEqual(kind.get(session, kind.size), "60", "a backup from before doesn't undo the choice")
        kind.set(session, kind.size, "50")
        self.assertEqual(kind.state(session), before)

    @each(Plank, Xfce)
    def test_none_is_written_for_that_is_elsewhere_or_gone(self, session, kind):
        session.write_settings(manageDock=False, barEdge="top")
        before = kind.state(session)
        session.start_bar()
        session.keep_behind_bar()
        session.relaunch()
        if isinstance(kind, Plank):
            self.assertEqual(kind.state(session), before, "another edge")
        self.assertFalse(session.is_hidden())
        session.write_settings(barEdge="bottom")
        eventually(lambda: "vantry-panel" in session.dock() and not session.dock()["autohide"], "the bar came to its edge")
        session.panel.kill()
        session.panel.wait()
        session.keep_behind_bar()
        session.relaunch()
        self.assertEqual(kind.state(session), before, "none runs")
        session.start_panel()
        session.keep_behind_bar()
        session.relaunch()
        eventually(session.is_hidden, "one that runs again")
        session.panel.kill()
        session.panel.wait()
        session.tool("defaults", "delete", DOCK)
        session.relaunch()
        self.assertEqual(kind.state(session), before, "what it had is given back although it doesn't run")

    @each(Plank, Xfce)
    def test_a_kill_at_any_write_loses_nothing(self, session, kind):
        session.take_in()
        for process in [process for process in session.processes if hasattr(process, "log_file")]:
            process.terminate()
            process.wait(5)
        before, kills = kind.state(session), 0
        for call in ("rename", "renameat,renameat2", "unlink,unlinkat", "sendmsg", "fsync"):
            for number in range(1, 60):
                session.keep_behind_bar()
                session.tool("defaults", "write", DOCK, "persistent-apps", "-array")
                result = session.tool("killall", "Dock", through=(
                    "strace", "-f", "-qq", "-o", os.devnull, "-e", "trace=" + call, "-e",
                    f"inject={call}:signal=SIGKILL:when={number}"))
                # The next time of either end: what was begun is finished, or all is given back.
                if number % 2:
                    session.relaunch()
                    self.assertTrue(session.is_hidden(), (call, number))
                session.restore()
                self.assertEqual(kind.state(session), before, (call, number))
                if result.returncode == 0:
                    break
                kills += 1
        self.assertGreater(kills, 8)

    @each(Xfce)
    def test_a_settings_service_that_hangs_is_told_in_a_second_and_nothing_is_lost(self, session, kind):
        session.take_in()
        before = kind.state(session)
        service = int(subprocess.run(
            ["dbus-send", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
             "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:org.xfce.Xfconf"],
            env=session.environment, capture_output=True, text=True, check=True).stdout.split()[-1])
        for hide in (True, False):
            session.keep_behind_bar() if hide else session.tool("defaults", "import", DOCK, session.backup())
            os.kill(service, signal.SIGSTOP)
            try:
                start = time.monotonic()
                result = session.tool("killall", "Dock")
                taken = time.monotonic() - start
            finally:
                os.kill(service, signal.SIGCONT)
            self.assertEqual(result.returncode, 1)
            self.assertRegex(result.stderr, "^vantry-killall: xfce4-panel: .+\n$")
            self.assertLess(taken, 1.5)
            if hide:
                self.assertFalse(session.is_hidden(), "as it was")
            session.relaunch()
            self.assertEqual(session.is_hidden(), hide, "the next time does it")
        self.assertEqual(kind.state(session), before)


if __name__ == "__main__":
    unittest.main()
