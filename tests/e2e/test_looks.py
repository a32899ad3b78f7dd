"""What is seen, and where: scales, blending, colours, and panels that have much to show."""

import os
import subprocess
import unittest

from PIL import ImageChops
from Xlib import X

from session import Session, SessionTest, eventually


class ScaleTest(unittest.TestCase):
    def test_everything_is_as_large_as_the_session_says_and_follows_it(self):
        with Session() as session:
            session.set_scale(2)
            first, second = session.xterm("first", "200x75+0+0"), session.xterm("second", "200x75+600+0")
            session.write_settings(autoFitWindows=False)
            session.start_bar()
            old = None
            for scale, edge in [(2, "bottom"), (1.25, "bottom"), (1.5, "top"), (3, "bottom"), (1, "bottom")]:
                with self.subTest(scale=scale, edge=edge):
                    session.set_scale(scale)
                    session.write_settings(barEdge=edge, autoFitWindows=False)
                    height = int(63 * scale + 0.5)
                    y = 0 if edge == "top" else 1080 - height
                    kept = height + int(5 * scale + 0.5)
                    at = 2 if edge == "top" else 3
                    # The bar is made anew for another scale.
                    eventually(lambda: [session.geometry(bar) for bar in session.bars() if bar.id != old]
                               == [(0, y, 1920, height)], "its size")
                    bar = session.bars()[0]
                    eventually(lambda: session.property(bar, "_NET_WM_STRUT_PARTIAL")[at] == kept, "its strut")
                    old = bar.id

                    eventually(lambda: len(session.names()) == 2, "two buttons")
                    session.activate(second)
                    session.click(session.bar().button(0))
                    eventually(lambda: session.active() == first.id, "a click goes to the button's window")
                    session.move(*session.bar().trash(2))
                    tooltip = eventually(lambda: next(iter(session.popups("TOOLTIP")), None), "a tooltip")
                    x, ty, width, theight = session.geometry(tooltip)
                    self.assertAlmostEqual(x + width / 2, session.bar().trash(2)[0], delta=2 * scale)
                    gap = ty - (y + height) if edge == "top" else y - (ty + theight)
                    self.assertAlmostEqual(gap, 6 * scale, delta=1)
                    session.move(960, 540)

    def test_a_window_over_the_bar_is_moved_clear_of_it(self):
        with Session() as session:
            session.set_scale(2)
            session.start_bar()
            window = session.xterm("over the bar", "100x30+200+120")
            session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0x300 | 2 << 12, 200, 700)
            lower_edge = lambda: sum(session.geometry(window)[1::2])
            eventually(lambda: 1080 - 136 - 40 < lower_edge() <= 1080 - 136,
                       "it ends where the bar's room begins")


class BlendingTest(unittest.TestCase):
    """Under a window manager that doesn't blend by itself, with and without a program that does."""

    ROOT = 0x20, 0xA0, 0x60

    def open(self, **settings):
        session = self.enterContext(Session("openbox"))
        subprocess.run(["xsetroot", "-solid", "#%02x%02x%02x" % self.ROOT], env=session.environment, check=True)
        session.write_settings(barOpacity=0.5, **settings)
        session.start_bar()
        return session

    def bar_picture(self, session):
        return session.picture(*session.geometry(session.bars()[0]))

    def test_what_was_painted_before_is_not_seen_through_the_bar(self):
        for floating in (False, True):
            with self.subTest(floating=floating):
                session = self.open(floatingBar=floating)
                session.move(960, 400)
                before = eventually(lambda: self.settled(session), "it is painted")
                bar = session.bar()
                for place in ("launcher", "showDesktop"):
                    session.move(*bar.middle(place))
                    eventually(lambda: session.popups("TOOLTIP"), "a tooltip")
                session.move(960, 400)
                eventually(lambda: not session.popups("TOOLTIP"), "the tooltip is gone")
                eventually(lambda: self.is_alike(self.bar_picture(session), before), "nothing is left of it")
                self.assertEqual(before.getpixel((2, 2)), self.ROOT if floating else before.getpixel((1000, 31)))
                self.assertEqual(before.getpixel((1000, 31)), before.getpixel((1100, 31)))

    @staticmethod
    def is_alike(a, b):
        return max(most for _, most in ImageChops.difference(a, b).getextrema()) <= 2

    def settled(self, session):
        first = self.bar_picture(session)
        is_painted = first.getpixel((1000, 31)) != self.ROOT
        return first if is_painted and self.is_alike(first, self.bar_picture(session)) else None

    def test_a_program_that_blends_is_followed_when_it_comes_and_goes(self):
        session = self.open()
        body = lambda: session.picture(1000, 1048, 1, 1).getpixel((0, 0))
        dark = eventually(lambda: max(body()) < 0x30 and body(), "a ground of its own")
        for _ in range(2):
            picom = session.start("picom", "--config", os.devnull, "--backend", "xrender")
            eventually(lambda: min(body()[1:]) > 0x40, "what is behind it shows")
            picom.terminate()
            picom.wait()
            eventually(lambda: body() == dark, "its own ground again")


class MuchToShowTest(SessionTest):
    def test_panels_keep_to_the_screen_whatever_they_have_to_show(self):
        session = self.session
        session.start_bar()
        root = session.root
        for number in range(200):
            window = root.create_window(200, 150, 480, 320, 0, X.CopyFromParent)
            window.set_wm_class("wide", "w" * 8000)
            window.set_wm_name("w" * 8000)
            window.map()
        session.display.flush()
        eventually(lambda: len(session.clients()) >= 200, "the windows are there", 30)
        button = session.bar().button(0)
        session.move(*button)
        x, _, width, _ = session.geometry(eventually(lambda: next(iter(session.popups("POPUP_MENU")), None), "a preview"))
        self.assertEqual(width, 10 * 176 + 9 * 8 + 20)
        self.assertTrue(0 <= x <= 1920 - width)

        session.press(3)
        session.release(3)
        menu = lambda: next((window for window in session.popups("POPUP_MENU") if session.geometry(window)[2] != width), None)
        x, y, across, down = session.geometry(eventually(menu, "a menu"))
        self.assertTrue(0 <= x <= 1920 - across and 0 <= y <= 1017 - down, (x, y, across, down))
        self.assertLess(across, 600)
        session.key("Escape")
        eventually(lambda: not menu(), "the menu is closed")


if __name__ == "__main__":
    unittest.main()
