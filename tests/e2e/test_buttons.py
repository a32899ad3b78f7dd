"""Real programs on the bar: names, icons, clicks, dragging, filters."""

import os
import plistlib
import unittest

import dbus
import dbus.lowlevel
from PIL import Image, ImageChops, ImageStat
from session import Session, SessionTest, eventually
from Xlib import X


def difference(a, b):
    """Mean difference of two pictures a channel, from 0 to 255."""
    return sum(ImageStat.Stat(ImageChops.difference(a, b)).mean) / 3


class ProgramsTest(unittest.TestCase):
    def test_programs_of_three_toolkits_get_buttons_with_their_own_names_and_icons(self):
        names = ["XTerm", "L3afpad", "FeatherPad"]
        with Session(has_shipped_icons=True) as session:
            session.start_bar()
            session.xterm()
            session.open("L3afpad", "l3afpad")
            session.open("FeatherPad", "featherpad", "--standalone", env={"QT_QPA_PLATFORM": "xcb"})
            for name in names:
                counted = session.run(env={"BAR_COUNT_APP": name}).stderr
                self.assertRegex(counted, name + r" pid=\d+: 1 counted window")

            bar = session.bar()
            session.move(900, 400)
            look = lambda name: session.icon_picture(bar, bar.button(names.index(name))[0])
            # The icon as its package ships it, scaled by other code than ours, on the bar's own colour.
            shipped = Image.open("/usr/share/icons/hicolor/128x128/apps/l3afpad.png").convert("RGBA")
            expected = Image.new("RGBA", (bar.icon, bar.icon), session.picture(1900, 1050, 1, 1).getpixel((0, 0)))
            expected.alpha_composite(shipped.resize((bar.icon, bar.icon), Image.LANCZOS))
            eventually(lambda: difference(look("L3afpad"), expected.convert("RGB")) < 6, "its own icon is painted")
            pictures = {name: look(name) for name in names}
            for one, other in (("XTerm", "L3afpad"), ("XTerm", "FeatherPad"), ("L3afpad", "FeatherPad")):
                self.assertGreater(difference(pictures[one], pictures[other]), 12, f"{one} and {other} look alike")


class ClickTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.write_settings(showFinderButton=False)
        self.session.start_bar()
        self.terminal = self.session.xterm("terminal")
        self.editor = self.session.open("L3afpad", "l3afpad")
        eventually(lambda: self.session.active() == self.editor.id, "the editor is active")
        eventually(lambda: self.session.names() == ["XTerm", "L3afpad"], "both have a button")

    def click_button(self, name):
        session = self.session
        session.click(session.bar().button(session.names().index(name)))

    def frontmost(self):
        return self.session.active()

    def stacking(self):
        return [window.id for window in self.session.clients() if window.id in (self.terminal.id, self.editor.id)]

    def test_a_click_activates_and_raises_and_a_second_one_goes_back(self):
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == self.terminal.id, "the terminal is active")
        self.assertEqual(self.stacking(), [self.editor.id, self.terminal.id], "and in front")
        eventually(lambda: "CLICK TOTAL (XTerm)" in self.session.log(), "the click is timed")
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == self.editor.id, "a click on the frontmost goes back")
        self.click_button("L3afpad")
        eventually(lambda: self.frontmost() == self.terminal.id, "and back again")

    def test_a_click_un_minimises(self):
        self.session.minimise(self.terminal)
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == self.terminal.id, "the terminal is active")
        self.assertFalse(self.session.is_minimised(self.terminal))

    def test_a_small_window_is_shown_by_a_click_and_a_middle_click_opens_another(self):
        session = self.session
        session.ask(self.terminal, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)
        eventually(lambda: session.names() == ["L3afpad"], "the terminal has gone")
        small = session.xterm("small", "38x12+200+150")
        session.activate(self.editor)
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == small.id, "it is active")
        session.activate(self.editor)
        session.minimise(small)
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == small.id, "it is active again")
        session.move(*session.bar().button(session.names().index("XTerm")))
        session.press(2)
        session.release(2)
        eventually(lambda: len(session.windows_of("XTerm")) > 1, "a new window opens")
        self.assertEqual(len(session.windows_of("XTerm")), 2, "of which no click has opened one")

    def test_a_click_on_a_window_button_raises_just_that_window(self):
        second = self.session.xterm("second")
        third = self.session.xterm("third")
        self.session.minimise(second)
        self.session.write_settings(grouping="never", showFinderButton=False)
        eventually(lambda: self.session.names().count("XTerm") == 3, "three terminals are three programs")
        # Every terminal is a process of its own: the second one's button is the third on the bar.
        self.session.click(self.session.bar().button(2))
        eventually(lambda: self.frontmost() == second.id, "the second terminal is active")
        self.assertFalse(self.session.is_minimised(second))
        self.assertFalse(self.session.is_minimised(third))

    def test_show_desktop_hides_everything_and_brings_it_back_as_it_was(self):
        session = self.session
        minimised = session.xterm("minimised before")
        session.minimise(minimised)
        session.activate(self.terminal)
        session.click(session.bar().middle("showDesktop"))
        eventually(lambda: session.is_minimised(self.terminal) and session.is_minimised(self.editor), "the screen is clear")
        session.move(900, 300)
        eventually(session.is_showing_desktop, "the bar says so")
        session.click(session.bar().middle("showDesktop"))
        eventually(lambda: not session.is_minimised(self.terminal) and not session.is_minimised(self.editor),
                   "the windows are back")
        eventually(lambda: self.frontmost() == self.terminal.id, "the program that was in front is there again")
        eventually(lambda: self.stacking() == [self.editor.id, self.terminal.id], "the windows lie as they did")
        self.assertTrue(session.is_minimised(minimised), "what was minimised before stays so")

    def test_a_click_on_a_hidden_program_shows_it(self):
        session = self.session
        session.click(session.bar().middle("showDesktop"))
        eventually(lambda: session.is_minimised(self.terminal), "the terminal is hidden")
        session.move(900, 300)
        eventually(session.is_showing_desktop, "the screen is clear")
        self.click_button("XTerm")
        eventually(lambda: self.frontmost() == self.terminal.id, "the terminal is active")
        self.assertTrue(session.is_minimised(self.editor), "the other program stays hidden")

    def test_dragging_a_button_reorders_and_is_remembered(self):
        session = self.session
        bar = session.bar()
        session.drag(bar.button(0), bar.button(1))
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "the order on the bar")
        self.assertEqual(session.settings()["appOrder"], "manual")
        order = session.settings()["manualOrder"]
        self.assertEqual(len(order), 2)
        # The file is a property list that another reader understands, with the keys in the new order.
        with open(session.preferences(), "rb") as file:
            self.assertEqual(plistlib.load(file)["manualOrder"], order)

        session.restart_bar()
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "the order after a new start")

    def test_the_frontmost_button_and_the_hovered_one_are_lit(self):
        session = self.session
        session.move(900, 300)
        bar = session.bar()
        corner = lambda index: session.picture(bar.button(index)[0] - 20, bar.y + 12, 4, 4)
        plain = session.picture(1900, bar.y + 12, 4, 4)
        eventually(lambda: difference(corner(1), plain) > 20, "the frontmost button has its pill")
        self.assertLess(difference(corner(0), plain), 2)
        session.move(*bar.button(0))
        eventually(lambda: difference(corner(0), plain) > 10, "the hovered button has its pill")
        session.move(900, 300)
        eventually(lambda: difference(corner(0), plain) < 2, "and loses it when the pointer leaves")


class TrashTest(unittest.TestCase):
    def test_the_tile_follows_the_users_trash(self):
        with Session() as session:
            session.write_settings(showFinderButton=False)
            session.start_bar()
            session.move(900, 300)
            bar = session.bar()
            tile = lambda: session.picture(bar.trash(0)[0] - 16, bar.y + 12, 32, 36)
            empty = eventually(lambda: len(set(tile().getdata())) > 8 and tile(), "the tile is painted")
            with open(os.path.join(session.trash_folder(), "thrown away"), "w", encoding="utf-8"):
                pass
            eventually(lambda: difference(tile(), empty) > 0.5, "the tile shows a full Trash", 4)
            os.remove(os.path.join(session.trash_folder(), "thrown away"))
            eventually(lambda: difference(tile(), empty) < 0.1, "and an empty one again", 4)


class FilterTest(unittest.TestCase):
    def test_grouping_and_the_desktop_filter_follow_settings_written_by_another_process(self):
        with Session() as session:
            session.write_settings(showFinderButton=False)
            session.start_bar()
            editor = session.open("L3afpad", "l3afpad")
            session.xterm()
            eventually(lambda: session.names() == ["L3afpad", "XTerm"], "both are on the bar")
            session.ask(editor, "_NET_WM_DESKTOP", 1, 2)
            eventually(lambda: session.property(editor, "_NET_WM_DESKTOP")[0] == 1, "the editor is on another desktop")
            session.write_settings(showFinderButton=False, currentSpaceOnly=True)
            eventually(lambda: session.names() == ["XTerm"], "just this desktop's programs")
            session.ask(session.root, "_NET_CURRENT_DESKTOP", 1)
            eventually(lambda: session.names() == ["L3afpad"], "the other desktop's program")
            session.write_settings(showFinderButton=False, currentSpaceOnly=False)
            eventually(lambda: session.names() == ["L3afpad", "XTerm"], "all again")


class BadgeTest(unittest.TestCase):
    def test_a_launcher_entry_signal_shows_as_a_badge(self):
        with Session() as session:
            session.write_settings(showFinderButton=False)
            session.start_bar()
            session.open("L3afpad", "l3afpad")
            eventually(lambda: session.names() == ["L3afpad"], "the program has its button")
            session.move(900, 300)
            bar = session.bar()
            corner = lambda: session.picture(bar.button(0)[0] + 8, bar.y + 8, 10, 10)

            def is_red():
                red, green, blue = ImageStat.Stat(corner()).mean
                return red > 120 and red > 2 * green and red > 2 * blue

            self.assertFalse(is_red())

            # A badge lasts as long as the program that sent it, so the sender stays.
            bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
            update = dbus.lowlevel.SignalMessage("/com/canonical/unity/launcherentry/1",
                                                 "com.canonical.Unity.LauncherEntry", "Update")
            update.append("application://l3afpad.desktop", {"count": dbus.Int64(7), "count-visible": True},
                          signature="sa{sv}")

            def signal_and_look():
                bus.send_message(update)
                bus.flush()
                return is_red()

            eventually(signal_and_look, "the badge is painted")
            bus.close()
            eventually(lambda: not is_red(), "the badge goes with its sender")


if __name__ == "__main__":
    unittest.main(verbosity=2)
