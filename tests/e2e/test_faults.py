"""What can go wrong around the program: it goes on, or says clearly why it can't."""

import os
import unittest

from PIL import Image
from Xlib import X

from session import Session, World, eventually


class StartFaultTest(unittest.TestCase):
    def test_what_is_asked_for_in_vain_is_named_and_a_picture_is_written(self):
        with World() as world:
            scenario, picture = (os.path.join(world.folder, name) for name in ("scenario.json", "desktop.png"))
            with open(scenario, "w", encoding="utf-8") as file:
                file.write('{\n  "displays": [\n    { "number": "one" }\n  ]\n}\n')
            for arguments, variables, status, told in (
                ((), {"DISPLAY": ":4242"}, 1, "vantry: .*:4242"),
                (("--scenario", scenario), {}, 2, r"scenario\.json: line 3: .+"),
                (("--scenario", scenario + ".missing"), {}, 2, "missing"),
                (("--no-such-option",), {}, 2, "usage: vantry"),
                (("--picture", picture), {}, 0, picture),
            ):
                result = world.run(*arguments, env=variables)
                self.assertEqual(result.returncode, status, result.stderr)
                self.assertRegex(result.stdout if status == 0 else result.stderr, told)
                self.assertNotRegex(result.stderr, r"\[(bar|time)\]", "nobody asked for a log")
            with Image.open(picture) as image:
                self.assertGreaterEqual(image.width, 1280)
                self.assertGreater(len(image.convert("RGB").getcolors(1 << 24)), 500)


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

    def test_odd_windows_and_ones_that_come_and_go_in_a_storm_do_no_harm(self):
        with Session() as session:
            program = session.start_bar()
            root, depth = session.root, session.display.screen().root_depth
            create = lambda width, height: root.create_window(50, 50, width, height, 0, depth, X.InputOutput, X.CopyFromParent)
            # All of one client: a window manager mistakes a number that another client had for the window before.
            last = []
            for _ in range(10):
                storm = [create(500, 300) for _ in range(6)]
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
            session.open("L3afpad", "l3afpad")
            eventually(lambda: session.names() == ["L3afpad"], "just the last is left")

            create(32000, 32000).map()
            session.display.sync()
            session.xterm()
            eventually(lambda: session.names() == ["L3afpad", None, "XTerm"], "their program has a button, and the bar goes on")
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
