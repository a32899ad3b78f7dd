"""What is seen, and where: scales, blending, colours, and panels that have much to show."""

import unittest

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
                    session.move(960, 540)

    def test_a_window_over_the_bar_is_moved_clear_of_it(self):
        with Session() as session:
            session.set_scale(2)
            session.start_bar()
            window = session.xterm("over the bar", "100x30+200+120")
            session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0x300 | 2 << 12, 200, 700)
            lower_edge = lambda: sum(session.geometry(window)[1::2])
            eventually(lambda: "tamer: placed" in session.log() and 1080 - 136 - 40 < lower_edge() <= 1080 - 136,
                       "it ends where the bar's room begins")


if __name__ == "__main__":
    unittest.main()
