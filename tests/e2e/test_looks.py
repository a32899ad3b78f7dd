"""What is seen, and where: scales, blending."""

import os
import subprocess
import time
import unittest

from PIL import ImageChops

from session import Session, eventually


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
                    session.move(*session.bar().button(0))
                    preview = eventually(lambda: next(iter(session.popups("POPUP_MENU")), None), "a preview")
                    x, py, width, pheight = session.geometry(preview)
                    session.move(x + width / 2, py + pheight / 2)
                    time.sleep(0.3)
                    self.assertTrue(session.popups("POPUP_MENU"), "it stays while the pointer is on it")
                    session.move(2, 540)
                    eventually(lambda: not session.popups("POPUP_MENU"), "and goes with the pointer")

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


if __name__ == "__main__":
    unittest.main()
