"""The settings window, by hand, by keyboard and through the accessibility bus; and what it does to everything else."""

import os
import subprocess
import sys
import time
import unittest

from parts import Menus, Panels
from reader import Reader, children, extents, soon, states
from session import PROGRAM, Session, eventually

CLIENTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "clients")
PANES = ("Appearance", "Buttons", "Windows", "Dock", "Shortcuts", "General")
CONTROLS = {"check box", "combo box", "slider", "push button"}


class SettingsTest(Menus, Panels, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = cls.enterClassContext(Session())
        cls.reader = Reader(cls.session)

    def setUp(self):
        self.before = self.files()
        self.process = self.session.restart_bar()
        self.window = self.show()
        self.addCleanup(self.end)

    def end(self):
        self.process.terminate()
        self.assertEqual(self.process.wait(5), 0)
        domain = os.path.join(self.session.environment["XDG_CONFIG_HOME"], "vantry/Preferences/com.merrowen.vantry.plist")
        if os.path.exists(domain):
            os.remove(domain)

    # Hands

    def show(self):
        """Opens the window by the bar's menu."""
        x, y, width, height = self.session.geometry(self.session.bars()[0])
        self.session.click((x + width - 300, y + height // 2), 3)
        eventually(lambda: self.menus() and self.has_keyboard(), "the menu opens")
        self.session.key("Up", "Up", "Return")
        window = eventually(lambda: self.session.titled("Vantry Settings"), "the window opens")
        eventually(lambda: self.session.active() == window.id, "it has the keyboard")
        return window

    def turn_to(self, pane):
        """By what it is called: the sidebar answers to typing."""
        sidebar = next(found for found in self.below(self.frame()) if found.get_name() == "Settings")
        if "focused" not in states(sidebar):
            self.click(next(entry for entry in self.entries().values() if "selected" in states(entry)))
        self.session.key(pane[0].lower())
        soon(lambda: "selected" in states(self.entries()[pane]), pane + " is selected")

    def click(self, element):
        x, y, width, height = extents(element)
        self.session.click((x + width // 2, y + height // 2))

    # Eyes

    def files(self):
        """All that lies in the user's folders."""
        home = self.session.environment["HOME"]
        return {os.path.relpath(os.path.join(folder, name), home) for folder, _, names in os.walk(home) for name in names}

    def frame(self):
        return next(found for found in self.reader.find("frame") if found.get_name() == "Vantry Settings")

    def below(self, element):
        for child in children(element):
            yield child
            yield from self.below(child)

    def entries(self):
        return {found.get_name(): found for found in self.below(self.frame()) if found.get_name() in PANES and
                found.get_role_name() == "list item"}

    def controls(self):
        """What can be used on the page in sight, from top to bottom, as the tree has it."""
        return [found for found in self.below(self.frame())
                if found.get_role_name() in CONTROLS and "showing" in states(found) and found.get_name()]

    def control(self, name):
        return soon(lambda: next((found for found in self.controls() if found.get_name() == name), None), name)

    def focused(self):
        return next((found for found in self.below(self.frame())
                     if "focused" in states(found) and found.get_role_name() in CONTROLS), None)

    # What holds

    def test_every_control_is_reached_in_the_order_seen_and_says_what_it_is(self):
        for pane in PANES:
            with self.subTest(pane=pane):
                self.turn_to(pane)
                usable = [found for found in self.controls() if "sensitive" in states(found)]
                self.assertTrue(usable)
                order = []
                for _ in usable:
                    self.session.key("Tab")
                    order.append(soon(lambda: (found := self.focused()) and found.get_name() not in order and found,
                                      f"the next after {order}").get_name())
                places = [extents(self.control(name)) for name in order]
                for name, (x, y, _, height), (next_x, next_y, *_) in zip(order, places, places[1:]):
                    self.assertTrue(next_y > y + height or next_x > x and next_y > y - height, f"after {name}: {order}")
                self.assertEqual(sorted(order), sorted(found.get_name() for found in usable))
                for found in usable:
                    if found.get_name() == "Grant Screen Recording…":
                        continue  # What stands above it says it all.
                    self.assertGreater(len(found.get_description()), 20, found.get_name() + " is explained")

    def test_what_is_chosen_is_on_the_bar_and_what_is_changed_elsewhere_is_in_the_window(self):
        session = self.session
        toggle = self.control("Float above the screen edge")
        self.click(toggle)
        eventually(lambda: self.setting("floatingBar") is True, "it is written")
        soon(lambda: "checked" in states(toggle), "and shown")
        session.write_settings(floatingBar=False, barEdge="top")
        soon(lambda: "checked" not in states(toggle), "another program's change is in the window")
        picker = self.control("Position")
        soon(lambda: text_of(picker) == "Top", "and so is this one")
        eventually(lambda: session.geometry(session.bars()[0])[1] == 0, "the bar is at the top")
        picker.get_component_iface().grab_focus()
        session.key("Up")
        eventually(lambda: session.geometry(session.bars()[0])[1] > 900, "a key in the picker moves it down again")
        self.assertIs(self.focused(), picker, "with the keyboard still in it")

        # What the summary in the sidebar says follows.
        session.write_settings(barSize="small")
        soon(lambda: self.entries()["Appearance"].get_description().startswith("Bottom · small"), "the summary follows")

        self.click(self.control("Use the system accent colour"))
        self.assertTrue(self.control("Accent"))
        self.click(self.control("Use the system accent colour"))
        soon(lambda: not any(found.get_name() == "Accent" for found in self.controls()), "its row goes again")

        # A store that goes leaves what is in force without it.
        os.remove(session.preferences())
        soon(lambda: text_of(picker) == "Bottom" and text_of(self.control("Bar size")) == "Large", "the defaults")

    def test_a_colour_is_on_the_bar_while_it_is_chosen_and_goes_when_the_choice_is_cancelled(self):
        session = self.session
        for key, expected in (("Escape", None), ("Return", "C02040")):
            self.click(self.control("Colour"))
            window = eventually(lambda: session.titled("Colour"), "the colours open")
            eventually(lambda: session.active() == window.id, "with the keyboard")
            field = soon(lambda: next(found for dialog in self.reader.find("dialog") for found in self.below(dialog)
                                      if found.get_role_name() == "text" and found.get_text_iface() and
                                      found.get_text_iface().get_text(0, -1).startswith("#")), "the field of the colour")
            self.click(field)
            session.key("End", *["BackSpace"] * 6)
            session.type("c02040")
            eventually(lambda: self.setting("barTintHex") == "C02040", "it is chosen as it is typed")
            x, y, width, height = session.geometry(session.bars()[0])
            eventually(lambda: session.picture(x + width - 200, y + height // 2, 1, 1).getpixel((0, 0))[0] > 150,
                       "and is on the bar")
            session.key(key)
            eventually(lambda: not session.titled("Colour"), "it is closed")
            eventually(lambda: self.setting("barTintHex") == (expected or "1A1C22"), key)

    def test_a_row_keeps_the_keyboard_wherever_it_goes(self):
        self.turn_to("Buttons")
        down = self.control("Move Search down")
        down.get_component_iface().grab_focus()
        for _ in range(2):
            self.session.key("space")
        eventually(lambda: (self.setting("componentOrder") or [])[3:4] == ["search"], "it has gone down by two")
        self.assertEqual(self.focused().get_name(), "Move Search down")
        self.assertLess(extents(self.control("Move Finder down"))[1], extents(down)[1])
        self.session.key("Tab")
        soon(lambda: self.focused().get_name() == "App buttons" or self.focused().get_name() == "Move App buttons up",
             "Tab goes on below it")

    def test_a_slider_under_the_pointer_stays_there_and_its_last_place_is_kept(self):
        session = self.session
        slider = self.control("Opacity")
        x, y, width, height = extents(slider)
        session.move(x + width - 6, y + height // 2)
        session.press()
        for step in range(100):
            session.move(x + width - 6 - step, y + height // 2)
            if step == 50:
                # Another program, in the middle of it.
                subprocess.run([os.path.join(os.path.dirname(PROGRAM), "vantry-defaults"), "write", "com.merrowen.vantry",
                                "showBadges", "-bool", "false"], env=session.environment, check=True)
        session.release()
        value = lambda: slider.get_value_iface().get_current_value() / 100
        soon(lambda: 0.5 < value() < 0.8 and abs(self.setting("barOpacity") - value()) < 0.001, "where it is let go is kept")
        self.assertIs(self.setting("showBadges"), False)

    def test_the_window_is_an_ordinary_one_and_stays_where_it_was_put(self):
        session, window = self.session, self.window
        self.assertEqual(session.atoms(window, "_NET_WM_WINDOW_TYPE"), ["_NET_WM_WINDOW_TYPE_NORMAL"])
        self.assertNotIn("_NET_WM_STATE_SKIP_TASKBAR", session.atoms(window, "_NET_WM_STATE"))
        self.assertTrue(len(session.property(window, "_NET_WM_ICON")))
        session.ask(window, "_NET_MOVERESIZE_WINDOW", 0x300 | 0xC00 | 2 << 12, 150, 120, 900, 640)
        eventually(lambda: session.geometry(window)[2:] == (900, 640), "it takes another size")
        place = session.geometry(window)
        session.ask(window, "_NET_MOVERESIZE_WINDOW", 0xC00 | 2 << 12, 0, 0, 300, 200)
        eventually(lambda: session.geometry(window)[2:] == (780, 540), "but none too small")
        session.ask(window, "_NET_MOVERESIZE_WINDOW", 0xC00 | 2 << 12, 0, 0, 900, 640)
        eventually(lambda: session.geometry(window)[2:] == (900, 640), "and again")
        self.turn_to("Dock")
        session.key("Alt+F4")
        eventually(lambda: not session.titled("Vantry Settings"), "it is closed")
        self.assertIsNone(self.process.poll(), "which ends nothing")
        again = self.show()
        self.assertEqual(again.id, window.id)
        self.assertIn("selected", states(self.entries()["Dock"]))
        soon(lambda: near(session.geometry(again), place), "it is where it was")
        session.key("Alt+F4")
        eventually(lambda: not session.titled("Vantry Settings"), "it is closed")
        self.process = session.restart_bar()
        soon(lambda: near(session.geometry(self.show()), place), "and in the next run as well")

    def test_an_alert_stops_nothing_but_its_window(self):
        session = self.session
        session.xterm("Quarterly")
        self.addCleanup(lambda: [session.ask(w, "_NET_CLOSE_WINDOW", 0, 2) for w in session.windows_of("XTerm")])
        session.activate(self.window)
        self.turn_to("Dock")
        self.click(self.control("Move Dock apps into the taskbar…"))
        alert = eventually(lambda: session.titled("Vantry") and next(
            (w for w in session.clients() if session.atoms(w, "_NET_WM_WINDOW_TYPE")[:1] == ["_NET_WM_WINDOW_TYPE_DIALOG"]),
            None), "the alert opens")
        eventually(lambda: session.active() == alert.id, "it has the keyboard")
        self.assertEqual(session.property(alert, "WM_TRANSIENT_FOR")[0], self.window.id)
        session.move(*session.bar().button(session.names().index("XTerm")))
        self.preview()  # The bar goes on.
        session.move(900, 200)
        eventually(self.no_panels, "the preview has gone")
        session.key("Escape")
        eventually(lambda: alert.id not in [w.id for w in session.clients()], "Escape closes it")
        eventually(lambda: session.active() == self.window.id, "its window has the keyboard again")
        self.assertIsNot(self.setting("dockMigrated"), True)

    def test_uninstalling_leaves_nothing_and_shows_the_program(self):
        session = self.session
        shown = os.path.join(session.folder, "shown")
        session.start(sys.executable, os.path.join(CLIENTS, "file_manager.py"), shown)
        self.turn_to("General")
        self.click(self.control("Launch at login"))
        eventually(lambda: any("autostart" in file for file in self.files() - self.before), "it starts at login")
        self.click(self.control("Undo everything and quit…"))
        eventually(lambda: len([w for w in session.clients() if "DIALOG" in str(session.atoms(w, "_NET_WM_WINDOW_TYPE"))]),
                   "it asks first")
        time.sleep(0.3)
        session.key("Return")
        eventually(lambda: self.process.poll() is not None, "the program ends")
        self.assertEqual(self.process.returncode, 0)
        self.has_left_nothing()
        with open(shown, encoding="utf-8") as file:
            self.assertEqual(file.read(), "file://" + os.path.realpath(PROGRAM) + "\n")

    def test_uninstalling_by_the_environment_asks_nobody(self):
        self.process.terminate()
        self.assertEqual(self.process.wait(5), 0)
        self.assertTrue(any("vantry" in file.lower() for file in self.files()))
        self.assertEqual(self.session.run(env={"BAR_UNINSTALL": "1"}).returncode, 0)
        self.has_left_nothing()

    def has_left_nothing(self):
        self.assertEqual(self.files() - self.before, set())
        self.assertEqual([file for file in self.files() if "vantry" in file.lower()], [])


def text_of(picker):
    """What is chosen in it."""
    return next((choice.get_name() for choice in children(children(picker)[0]) if "selected" in states(choice)), None)


def near(place, other):
    return all(abs(a - b) <= 2 for a, b in zip(place, other))


if __name__ == "__main__":
    unittest.main(verbosity=2)
