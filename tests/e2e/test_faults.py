"""What can go wrong around the program: it goes on, or says clearly why it can't."""

import os
import unittest

from PIL import Image

from session import Session, World, eventually


class StartFaultTest(unittest.TestCase):
    def setUp(self):
        self.world = World()
        self.world.__enter__()
        self.addCleanup(self.world.__exit__)

    def test_a_missing_server_is_named(self):
        result = self.world.run(env={"DISPLAY": ":4242"})
        self.assertEqual(result.returncode, 1)
        self.assertIn("vantry: ", result.stderr)
        self.assertIn(":4242", result.stderr)

    def test_a_scenario_with_an_error_is_refused_with_line_and_reason(self):
        path = os.path.join(self.world.folder, "scenario.json")
        with open(path, "w", encoding="utf-8") as file:
            file.write('{\n  "displays": [\n    { "number": "one" }\n  ]\n}\n')
        result = self.world.run("--scenario", path)
        self.assertEqual(result.returncode, 2)
        self.assertRegex(result.stderr, r"scenario\.json: line 3: .+")
        self.assertEqual(self.world.run("--scenario", path + ".missing").returncode, 2)

    def test_an_unknown_option_is_refused_with_the_usage(self):
        result = self.world.run("--no-such-option")
        self.assertEqual(result.returncode, 2)
        self.assertIn("usage: vantry", result.stderr)

    def test_a_picture_of_the_embedded_desktop_is_written(self):
        path = os.path.join(self.world.folder, "desktop.png")
        result = self.world.run("--picture", path)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn(path, result.stdout)
        with Image.open(path) as picture:
            self.assertGreaterEqual(picture.width, 1280)
            self.assertGreater(len(picture.convert("RGB").getcolors(1 << 24)), 500)


class RunFaultTest(unittest.TestCase):
    def test_without_a_window_manager_the_bar_stands_and_follows_one_that_comes(self):
        with Session(window_manager=None) as session:
            program = session.start_bar(wait=False)
            eventually(lambda: "vantry: no window manager" in session.log(), "it is told")
            tree = lambda: [child for child in session.root.query_tree().children
                            if child.get_attributes().map_state == 2 and child.get_geometry().width == 1920]
            eventually(tree, "the bar is mapped")
            session.window_manager_name = "openbox"
            session.start_window_manager()
            session.xterm()
            eventually(lambda: "XTerm" in session.names(), "a program started later gets its button")
            self.assertIsNone(program.poll())

    def test_a_monitor_that_goes_in_a_hail_of_clicks_on_its_bar_does_no_harm(self):
        with Session() as session:
            program = session.start_bar()
            session.split_monitors()
            for _ in range(6):
                eventually(lambda: len(session.bars()) == 2, "a bar on each monitor")
                x, y, _, _ = session.geometry(session.bars()[1])
                session.move(x + 500, y + 30)
                going = session.start("xrandr", "--delmonitor", "RIGHT")
                while going.poll() is None:
                    for button in (1, 3, 1, 1):
                        session.press(button)
                        session.release(button)
                eventually(lambda: len(session.bars()) == 1, "one is left")
                self.assertIsNone(program.poll())
                session.set_monitor("RIGHT", "960/250x1080/280+960+0", "none")

    def test_windows_that_come_and_go_in_a_storm_do_no_harm(self):
        from Xlib import X
        with Session() as session:
            program = session.start_bar()
            root, depth = session.root, session.display.screen().root_depth
            # All of one client: a window manager mistakes a number that another client had for the window before.
            last = []
            for _ in range(10):
                storm = [root.create_window(50, 50, 500, 300, 0, depth, X.InputOutput, X.CopyFromParent) for _ in range(6)]
                for window in storm:
                    window.set_wm_class("storm", "Storm")
                    window.map()
                session.display.sync()
                for window in last + storm[:3]:
                    window.destroy()
                last = storm[3:]
            for window in last:
                window.destroy()
            session.display.sync()
            session.xterm("the last")
            eventually(lambda: session.names() == ["XTerm"], "just the last is left")
            self.assertIsNone(program.poll())

    def test_odd_windows_do_no_harm(self):
        from Xlib import X, Xatom
        with Session() as session:
            program = session.start_bar()
            root, depth = session.root, session.display.screen().root_depth
            odd = root.create_window(10, 10, 32000, 32000, 0, depth, X.InputOutput, X.CopyFromParent)
            odd.map()
            huge = root.create_window(50, 50, 400, 300, 0, depth, X.InputOutput, X.CopyFromParent)
            title = "ü" * (5 * 1024 * 1024)
            huge.change_property(session.atom("_NET_WM_NAME"), session.atom("UTF8_STRING"), 8, b"")
            for start in range(0, len(title), 100_000):
                huge.change_property(session.atom("_NET_WM_NAME"), session.atom("UTF8_STRING"), 8,
                                     title[start:start + 100_000].encode(), mode=X.PropModeAppend)
            huge.map()
            wrong = root.create_window(90, 90, 400, 300, 0, depth, X.InputOutput, X.CopyFromParent)
            for name, kind, form, data in (
                ("WM_CLASS", Xatom.CARDINAL, 32, [1, 2, 3]), ("_NET_WM_PID", Xatom.STRING, 8, b"many"),
                ("_NET_WM_NAME", Xatom.CARDINAL, 16, [7]), ("_NET_WM_ICON", Xatom.CARDINAL, 32, [4_000_000, 4_000_000, 1]),
                ("_NET_WM_STATE", Xatom.STRING, 8, b"above"), ("_NET_FRAME_EXTENTS", Xatom.STRING, 8, b"x"),
            ):
                wrong.change_property(session.atom(name), kind, form, data)
            wrong.map()
            session.display.sync()
            session.xterm()
            eventually(lambda: session.names() == [None, "XTerm"], "their program has a button, and the bar goes on")
            self.assertIsNone(program.poll())

    def test_a_damaged_settings_file_is_set_aside_with_the_defaults_in_force(self):
        with Session() as session:
            session.write_settings(barEdge="top")
            with open(session.preferences(), "rb") as file:
                damaged = file.read()[:100]
            with open(session.preferences(), "wb") as file:
                file.write(damaged)
            session.start_bar()
            self.assertEqual(session.geometry(session.bars()[0]), (0, 1017, 1920, 63))
            session.open("L3afpad", "l3afpad")
            eventually(lambda: "L3afpad" in session.names(), "it has a button")
            session.xterm()
            eventually(lambda: "XTerm" in session.names(), "it has a button")
            bar, names = session.bar(), session.names()
            session.drag(bar.button(names.index("XTerm")), bar.button(names.index("L3afpad")))
            eventually(lambda: session.settings_or_none() is not None, "a setting is written")
            with open(session.preferences() + ".damaged-1", "rb") as file:
                self.assertEqual(file.read(), damaged)


if __name__ == "__main__":
    unittest.main(verbosity=2)
