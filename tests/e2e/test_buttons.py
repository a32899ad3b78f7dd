"""Real programs on the bar: names, icons, clicks, dragging, filters."""

import os
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


class ButtonsTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.write_settings(showFinderButton=False)
        self.session.start_bar()
        self.editor = self.session.open("L3afpad", "l3afpad")
        self.terminal = self.session.xterm("terminal")
        eventually(lambda: self.session.names() == ["L3afpad", "XTerm"], "both have a button")

    def stacking(self):
        return [window.id for window in self.session.clients() if window.id in (self.terminal.id, self.editor.id)]

    def test_show_desktop_leaves_everything_as_it_was(self):
        session = self.session
        second = session.xterm("second")
        session.minimise(second)
        session.activate(self.terminal)
        others = (self.terminal, self.editor)
        for is_shown in (True, False, True):
            session.click(session.bar().middle("showDesktop"))
            eventually(lambda: all(session.is_minimised(window) is is_shown for window in others), "it is cleared or left")
            session.move(900, 300)
            eventually(lambda: session.is_showing_desktop() is is_shown, "the bar says so")
            self.assertTrue(session.is_minimised(second), "what was minimised before stays so")
            if not is_shown:
                eventually(lambda: session.active() == self.terminal.id, "the program that was in front is there again")
                eventually(lambda: self.stacking() == [self.editor.id, self.terminal.id], "the windows lie as they did")
        session.click(session.bar().button(0))
        eventually(lambda: session.active() == self.editor.id, "a click on a hidden program shows it")
        self.assertTrue(session.is_minimised(self.terminal), "and no other")

    def test_a_small_window_is_shown_by_a_click_and_a_middle_click_opens_another(self):
        session = self.session
        session.ask(self.terminal, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)
        eventually(lambda: session.names() == ["L3afpad"], "the terminal has gone")
        small = session.xterm("small", "38x12+200+150")
        session.activate(self.editor)
        session.click(session.bar().button(1))
        eventually(lambda: session.active() == small.id, "it is active")
        session.activate(self.editor)
        session.minimise(small)
        session.click(session.bar().button(1))
        eventually(lambda: session.active() == small.id, "it is active again")
        session.move(*session.bar().button(1))
        session.press(2)
        session.release(2)
        eventually(lambda: len(session.windows_of("XTerm")) > 1, "a new window opens")
        self.assertEqual(len(session.windows_of("XTerm")), 2, "of which no click has opened one")

    def test_the_front_and_the_hovered_button_are_lit_and_a_new_order_is_remembered(self):
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

        session.drag(bar.button(0), bar.button(1))
        eventually(lambda: session.names() == ["XTerm", "L3afpad"], "the order on the bar")
        # The file is a property list that another reader understands.
        self.assertEqual(session.settings()["appOrder"], "manual")
        self.assertEqual(len(session.settings()["manualOrder"]), 2)
        session.restart_bar()
        eventually(lambda: session.names() == ["XTerm", "L3afpad"], "the order after a new start")

    def test_filters_the_trash_and_badges_follow_what_others_do(self):
        session = self.session
        session.ask(self.editor, "_NET_WM_DESKTOP", 1, 2)
        eventually(lambda: session.property(self.editor, "_NET_WM_DESKTOP")[0] == 1, "the editor is on another desktop")
        session.write_settings(currentSpaceOnly=True)
        eventually(lambda: session.names() == ["XTerm"], "just this desktop's programs")
        session.ask(session.root, "_NET_CURRENT_DESKTOP", 1)
        eventually(lambda: session.names() == ["L3afpad"], "the other desktop's program")
        session.write_settings(currentSpaceOnly=False)
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "all again")

        session.move(900, 300)
        bar = session.bar()
        tile = lambda: session.picture(bar.trash(2)[0] - 16, bar.y + 12, 32, 36)
        empty = eventually(lambda: len(set(tile().getdata())) > 8 and tile(), "the tile is painted")
        thrown = os.path.join(session.trash_folder(), "thrown away")
        with open(thrown, "w", encoding="utf-8"):
            pass
        eventually(lambda: difference(tile(), empty) > 0.5, "the tile shows a full Trash", 4)
        os.remove(thrown)
        eventually(lambda: difference(tile(), empty) < 0.1, "and an empty one again", 4)

        def is_red():
            red, green, blue = ImageStat.Stat(session.picture(bar.button(0)[0] + 8, bar.y + 8, 10, 10)).mean
            return red > 120 and red > 2 * green and red > 2 * blue

        self.assertFalse(is_red())
        # A badge lasts as long as the program that sent it, so the sender stays.
        bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        update = dbus.lowlevel.SignalMessage("/com/canonical/unity/launcherentry/1",
                                             "com.canonical.Unity.LauncherEntry", "Update")
        update.append("application://l3afpad.desktop", {"count": dbus.Int64(7), "count-visible": True}, signature="sa{sv}")

        def signal_and_look():
            bus.send_message(update)
            bus.flush()
            return is_red()

        eventually(signal_and_look, "the badge is painted")
        bus.close()
        eventually(lambda: not is_red(), "the badge goes with its sender")


if __name__ == "__main__":
    unittest.main(verbosity=2)
