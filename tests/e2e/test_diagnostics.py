"""The diagnostic runs as people start them, by variable or by option, where things are as they should be and where not."""

import json
import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

from session import PROGRAM, Session, World, eventually, frame, is_full_screen

CLIENT = os.path.join(os.path.dirname(__file__), "../clients/accessible.py")
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"

# The variable that selects a run, the options that do, and how its lines begin.
RUNS = [
    ({"BAR_PROBE_CAPTURE": "1"}, ["--probe", "capture"], "[capture] "),
    ({"BAR_PROBE_DISPLAYS": "1"}, ["--probe", "displays"], "[display] "),
    ({"BAR_SELFTEST": "1"}, ["--self-test"], "[test] "),
    ({"BAR_AXTREE_APP": "xterm"}, ["--probe", "tree", "xterm"], "[axtree] "),
    ({"BAR_COUNT_APP": ""}, ["--probe", "windows", ""], "[wcount] "),
    ({"BAR_PROBE_APP": "XTerm"}, ["--probe", "raise", "XTerm"], "[wprobe] "),
    ({"BAR_PROBE": "1"}, ["--probe", "full-screen"], "[probe] "),
]


def diagnose(world, *arguments, **env):
    """What a run writes, once it has ended by itself."""
    result = subprocess.run([PROGRAM, *arguments], env={**world.environment, **env}, capture_output=True, text=True,
                            timeout=30, cwd=world.folder, check=False)
    assert result.returncode == 0, result.stderr
    return result.stderr


def lines(output, beginning):
    return [line[len(beginning):] for line in output.splitlines() if line.startswith(beginning)]


class NoDisplayTest(unittest.TestCase):
    def test_one_run_is_selected_and_ends_by_itself(self):
        everything = {name: value for variables, _, _ in RUNS for name, value in variables.items()}
        with World() as world:
            for variables, _, beginning in RUNS:
                with self.subTest(variables):
                    output = diagnose(world, **everything)
                    self.assertEqual({line.split("] ")[0] + "] " for line in output.splitlines() if line.startswith("[")},
                                     {beginning}, "the first of several in their order, and no other")
                    everything.pop(*variables)
            self.assertFalse(os.path.exists(os.path.join(world.folder, "vantry.png")), "a run takes no picture")

    def test_another_value_is_passed_over(self):
        with World() as world:
            variables = {name: value for name in ("BAR_UNINSTALL", "BAR_PROBE_CAPTURE", "BAR_PROBE_DISPLAYS", "BAR_SELFTEST",
                                                  "BAR_PROBE") for value in ("0", "", "true")}
            result = world.run("--picture", os.path.join(world.folder, "bar.png"), env=variables)
            self.assertIn("A picture", result.stdout)
            self.assertNotIn("[", result.stderr)

    def test_options_are_checked(self):
        with World() as world:
            for arguments, reason in ((["--probe"], "needs a name: displays, "), (["--probe", "magic"], "no probe magic"),
                                      (["--probe", "tree"], "needs an application")):
                result = world.run(*arguments)
                self.assertEqual(result.returncode, 2)
                self.assertIn(reason, result.stderr)
            for _, arguments, _ in RUNS:
                self.assertIn(" ".join(arguments[-2:] if arguments[0] == "--self-test" else arguments[1:2]),
                              world.run("--help").stdout)

    def test_the_embedded_desktop_passes_the_self_test(self):
        with World() as world:
            output = lines(diagnose(world, "--embedded", "--self-test"), "[test] ")
            self.assertRegex(output[-1], r"=== 1\d\d passed, 0 failed ===")
            self.assertEqual([line for line in output if "SKIP" in line],
                             ["  SKIP  Dock has not been managed on this machine"])

    def test_what_is_missing_is_said(self):
        """On a desktop where there is little, or too much."""
        display = {"number": 1, "uuid": "A", "frame": [0, 0, 800, 600], "spaces": [{"id": 1}]}
        app = {"pid": 6000001, "name": "Hermit"}
        window = {"number": 7, "owner": 6000001, "title": "Cave", "frame": [50, 50, 400, 300]}
        full = {**window, "fullScreen": True}
        wide = {"role": "AXGroup", "elements": [{"role": "AXGroup", "elements": [{"role": "AXStaticText", "text": "leaf"}] * 30}
                                                for _ in range(60)]}
        huge = {**window, "elements": [wide] * 60}
        blind = {"permissions": {"accessibility": False, "screenCapture": False}}
        rows = [
            ("no permission", blind, ["raise", "Hermit"], "STOP: no Accessibility grant"),
            ("no permission", blind, ["tree", "Hermit"], "STOP: no Accessibility grant"),
            ("no permission", blind, ["full-screen"], "STOP: grant Accessibility to Vantry, then re-run."),
            ("no permission", blind, ["capture"], "CGPreflightScreenCaptureAccess() = false"),
            ("no such program", {}, ["tree", "Nobody"], "no running app matching 'Nobody'"),
            ("no windows", {"windows": []}, ["displays"], "=== 1 displays, 0 windows ==="),
            ("no windows", {"windows": []}, ["capture"], "=== 0 of 0 windows captured ==="),
            ("no windows", {"windows": []}, ["raise", "hermit"], "AXWindows count = 0"),
            ("it hangs", {"processes": [{**app, "faults": {"hangs": True}}]}, ["raise", "Hermit"], "AXWindows unavailable"),
            ("it hangs", {"processes": [{**app, "faults": {"hangs": True}}]}, ["tree", "Hermit"],
             "AXChildren -> cannotComplete \u2014 the application doesn't answer"),
            ("it hangs", {"processes": [{**app, "faults": {"hangs": True}}], "windows": [full]}, ["full-screen"],
             "  AXWindows error: cannotComplete \u2014 cannot probe this app"),
            ("it misnames", {"processes": [{**app, "faults": {"fails": {"AXWindows": -1}}}], "windows": [full]},
             ["full-screen"], "  AXWindows error: cannotComplete \u2014 cannot probe this app"),
            ("it hides", {"processes": [{**app, "faults": {"needsManualAccessibility": True}}]}, ["raise", "Hermit"],
             "AXWindows count = 1"),
            ("108,000 elements", {"windows": [huge]}, ["tree", "Hermit"], " sliders ==="),
        ]
        with World() as world:
            for name, changes, probe, expected in rows:
                with self.subTest(name, probe=probe):
                    path = os.path.join(world.folder, "scenario.json")
                    with open(path, "w", encoding="utf-8") as file:
                        json.dump({"displays": [display], "processes": [app], "windows": [window]} | changes, file)
                    self.assertIn(expected, diagnose(world, "--scenario", path, "--probe", *probe))

    def test_a_full_screen_window_is_taken_out_and_sized(self):
        with World() as world:
            path = os.path.join(world.folder, "scenario.json")
            with open(path, "w", encoding="utf-8") as file:
                json.dump({"displays": [{"number": 1, "uuid": "A", "frame": [0, 0, 800, 600], "spaces": [{"id": 1}]}],
                           "processes": [{"pid": 6000001, "name": "Cinema"}],
                           "windows": [{"owner": 6000001, "title": "Film", "frame": [50, 50, 400, 300],
                                        "fullScreen": True}]}, file)
            told = lines(diagnose(world, "--scenario", path, "--probe", "full-screen"), "[probe] ")
            for line in ("found 1 full-screen spaces", "Cinema (pid 6000001)", "  current size     = 800x600",
                         "  AXFullScreen after set = false", "  size after exiting     = 400x300",
                         "  size after set   = 800x537", "=== probe complete ==="):
                self.assertIn(line, told)


class Desktop:
    """A real one, with real programs, a file manager among them."""

    def setUp(self):
        self.session = self.enterContext(Session())
        shutil.copy("/usr/share/applications/pcmanfm.desktop", os.path.join(self.session.folder, "share/applications"))
        with open(os.path.join(self.session.environment["XDG_CONFIG_HOME"], "mimeapps.list"), "w", encoding="ascii") as file:
            file.write("[Default Applications]\ninode/directory=pcmanfm.desktop\n")

    def files(self):
        """All of the user's files, by their content."""
        contents = {}
        for folder, _, names in os.walk(self.session.environment["HOME"]):
            for name in names:
                path = os.path.join(folder, name)
                if "/.cache/" not in path and os.path.isfile(path):
                    with open(path, "rb") as file:
                        contents[path] = file.read()
        return contents

    def open_programs(self):
        session = self.session
        self.terminal = session.xterm("Quarterly figures")
        self.editor = session.open("L3afpad", "l3afpad")
        self.manager = session.open("Pcmanfm", "pcmanfm", session.environment["HOME"])
        eventually(lambda: session.active() == self.manager.id, "the last one is active")
        eventually(self.is_at_rest, "the window manager has placed it")

    def is_at_rest(self):
        before = self.frames()
        time.sleep(0.3)
        return self.frames() == before

    def frames(self):
        return {window.id: frame(self.session, window) for window in (self.terminal, self.editor, self.manager)}


class DesktopTest(Desktop, unittest.TestCase):
    """What depends on the window manager."""

    def self_test(self):
        output = lines(diagnose(self.session, "--self-test"), "[test] ")
        passed = sum("  PASS  " in line for line in output)
        failed = [line for line in output if "  FAIL  " in line]
        self.assertEqual(output[-1], f"=== {passed} passed, {len(failed)} failed ===")
        self.assertEqual(failed, [])
        self.assertGreater(passed, 100)
        return [line for line in output if "  SKIP  " in line]

    def test_every_check_passes_and_nothing_of_others_is_touched(self):
        session = self.session
        chosen = {"barSize": "small", "barEdge": "top", "manualOrder": ["b", "a"], "componentOrder": ["trash", "apps"],
                  "multiDisplayMode": "mirrored", "showTrash": False, "accentHex": "FF0000", "unknown": 7}
        session.write_settings(**chosen)
        self.open_programs()
        before, frames, active = self.files(), self.frames(), session.active()
        self.assertEqual(self.self_test(), ["  SKIP  Dock has not been managed on this machine"])

        after = self.files()
        settings = session.settings()
        order = settings.pop("componentOrder")
        self.assertEqual(order[:2], ["trash", "apps"])
        self.assertEqual(len(order), 6)
        for name, value in {**chosen, "accentHex": "", "barStyle": "solid", "barOpacity": 1, "barTintHex": "1A1C22",
                            "showWindowPreviews": True}.items():
            if name != "componentOrder":
                self.assertEqual(settings[name], value, name)
        ours = {path for path in after if "vantry" in path}
        self.assertEqual({path: text for path, text in after.items() if path not in ours},
                         {path: text for path, text in before.items() if path not in ours})
        self.assertFalse([path for path in ours if "dirty" in path or "LaunchAgents" in path])
        self.assertEqual((self.frames(), session.active()), (frames, active))

    def test_beside_a_running_bar_it_harms_nothing(self):
        session = self.session
        session.start_bar()
        self.open_programs()
        session.ask(self.editor, "_NET_WM_STATE", 1, session.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
                    session.atom("_NET_WM_STATE_MAXIMIZED_HORZ"), 1)
        time.sleep(1)
        flags = [path for path in self.files() if path.endswith("dirty.flag")]
        self.assertTrue(flags)
        state = lambda: (session.settings(), self.frames(), session.geometry(session.bars()[0]), session.active(), session.names(),
                         [self.files()[path] for path in flags])
        seen = state()
        skipped = self.self_test()
        self.assertEqual(len(skipped), 3)
        for line in skipped:
            self.assertIn("another instance, which is running", line)
        for probe in (["--probe", "displays"], ["--probe", "capture"], ["--probe", "tree", "xterm"]):
            diagnose(session, *probe)
        time.sleep(1)
        self.assertEqual(state(), seen)
        # Its keys are still its own, and so is its place.
        session.key("Alt+1")
        eventually(lambda: session.active() != seen[3], "a key of the bar works")
        self.assertEqual(len(session.bars()), 1)
        session.run(env={"BAR_DEBUG": "1"})
        self.assertEqual(len(session.bars()), 1)

    def test_a_program_is_brought_forward_and_its_windows_told(self):
        session = self.session
        self.open_programs()
        for arguments, env in ((["--probe", "raise", "l3af"], {}), ([], {"BAR_PROBE_APP": "l3af"})):
            session.activate(self.terminal)
            told = lines(diagnose(session, *arguments, **env), "[wprobe] ")
            self.assertEqual(session.active(), self.editor.id)
            for line in ("after activate: active=true", "frontmost app now  = L3afpad", "AXWindows count = 1",
                         "  title     = (Untitled)", "  role      = AXWindow", "  focused   = true"):
                self.assertIn(line, told)
        told = lines(diagnose(session, "--probe", "windows", "xterm"), "[wcount] ")
        x, y, width, height = (int(value) for value in frame(session, self.terminal))
        self.assertIn(f"  id={self.terminal.id} {width}x{height} at ({x},{y}) spaces=[1] title=\"Quarterly figures\"", told)
        captured = lines(diagnose(session, "--probe", "capture"), "[capture] ")
        self.assertEqual(captured[-1], "=== 3 of 3 windows captured ===")
        self.assertFalse([line for line in captured if "pending" in line])

    def test_a_full_screen_window_is_taken_out_and_sized(self):
        session = self.session
        terminal = session.xterm()
        session.ask(terminal, "_NET_WM_STATE", 1, session.atom("_NET_WM_STATE_FULLSCREEN"), 0, 1)
        eventually(lambda: is_full_screen(session, terminal), "it fills the screen")
        told = lines(diagnose(session, "--probe", "full-screen"), "[probe] ")
        self.assertFalse(is_full_screen(session, terminal))
        _, _, width, height = frame(session, terminal)
        # Terminals grow by whole letters.
        self.assertTrue(1900 <= width <= 1920 and 1000 <= height <= 1017, (width, height))
        for line in ("found 1 full-screen spaces", "  AXFullScreen = true", "  current size     = 1920x1080",
                     "  AXFullScreen after set = false", f"  size after set   = {width}x{height}"):
            self.assertIn(line, told)


class TreeTest(Desktop, unittest.TestCase):
    def test_what_programs_show_is_told(self):
        session = self.session
        session.start(LAUNCHER)
        session.open("Client", "/usr/bin/python3", CLIENT, "player")
        session.open("FeatherPad", "featherpad")
        told = lines(diagnose(session, BAR_AXTREE_APP="CLIENT"), "[axtree] ")
        self.assertEqual([line.strip() for line in told[2:]],
                         ['[text] "Lanterns on the River"', '[AXSlider] value=93 min=0 max=240 desc="93"',
                          '[button] "Previous"', '[button] "Pause"', "", "=== found 1 text nodes, 1 sliders ==="])
        told = [line.strip() for line in lines(diagnose(session, "--probe", "tree", "featherpad"), "[axtree] ")]
        self.assertIn('[text] "Find:"', told)
        self.assertIn('[button] "Next (F8)"', told)

    def test_programs_and_buses_that_fail_are_outlived(self):
        session = self.session
        terminal = session.xterm()
        tree = lambda name: lines(diagnose(session, "--probe", "tree", name), "[axtree] ")
        self.assertIn("AXChildren -> apiDisabled \u2014 this desktop offers no accessibility", tree("xterm"))
        session.start(LAUNCHER)
        eventually(lambda: "AXChildren -> notImplemented \u2014 the application takes no part in accessibility" in tree("xterm"),
                   "there is a bus")
        player = session.open("Client", "/usr/bin/python3", CLIENT, "player")
        eventually(lambda: "=== found 1 text nodes, 1 sliders ===" in tree("client"), "it is on the bus")
        client = session.processes[-1]
        os.kill(client.pid, signal.SIGSTOP)
        self.assertIn("AXChildren -> cannotComplete \u2014 the application doesn't answer", tree("client"))
        # Whoever waits for it can still be ended.
        waiting = session.start(PROGRAM, "--probe", "tree", "client")
        time.sleep(2.5)
        self.assertIsNone(waiting.poll())
        waiting.terminate()
        self.assertEqual(waiting.wait(5), 0)
        client.kill()
        eventually(lambda: player.id not in [window.id for window in session.clients()], "it has gone")

        session.open("Client", "/usr/bin/python3", CLIENT, "endless")
        time.sleep(0.5)
        told = tree("client")
        self.assertRegex(told[-2], r"out of time after \d+ nodes: the tree goes on")
        self.assertEqual(told[-1], "=== found 0 text nodes, 0 sliders ===")

        session.window_manager.terminate()
        session.window_manager.wait(5)
        self.assertTrue(terminal.get_attributes())
        for _, arguments, beginning in RUNS:
            with self.subTest("without a window manager", arguments=arguments):
                self.assertTrue(lines(diagnose(session, *arguments), beginning))


if __name__ == "__main__":
    unittest.main()
