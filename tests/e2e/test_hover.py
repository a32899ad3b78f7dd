"""Hovering over the bar: tooltips, previews with the windows' own pictures, and the way from a button into a preview."""

import unittest

from parts import MARGIN, Panels
from session import SessionTest, eventually

class HoverTest(Panels, SessionTest):
    def setUp(self):
        super().setUp()
        self.session.write_settings(showFinderButton=False)

    def test_at_either_edge_the_pointer_reaches_the_preview_at_any_speed_and_leaving_closes_it(self):
        session = self.session
        session.xterm(geometry="60x20+200+250")
        for edge in ("bottom", "top"):
            with self.subTest(edge=edge):
                session.write_settings(barEdge=edge)
                session.restart_bar()
                eventually(lambda: len(session.names()) == 1, "the terminal has its button")
                button = session.bar().button(0)
                for steps in (1, 7, 150):
                    session.move(*button)
                    preview = self.preview()
                    bar = session.bar()
                    gap = preview[1] - bar.y - bar.height if edge == "top" else bar.y - preview[1] - preview[3]
                    self.assertEqual(gap, 8)
                    self.travel(button, self.card(preview, 0), steps)
                    # The card that the pointer is on is lit; so it has been told of the last step.
                    eventually(lambda: self.is_lit(preview), "the card under the pointer is lit")
                    self.assertEqual(self.popup("POPUP_MENU"), preview)
                    corner = (0, 0) if edge == "bottom" else (1919, 1079)
                    session.move(*corner)
                    eventually(self.no_panels, "the preview goes when the pointer leaves through a corner")

    def is_lit(self, preview):
        x, y, _, height = preview
        # Beside the picture, within the highlight: 0.13 grey and 0.12 of white over it.
        return self.is_color((x + MARGIN - 3, y + MARGIN + 50), (59, 59, 59))

    def test_a_preview_goes_with_its_monitor(self):
        session = self.session
        session.split_monitors()
        session.xterm(geometry="60x20+1100+250")
        process = session.start_bar()
        eventually(lambda: len(session.bars()) == 2, "each monitor has its bar")
        eventually(lambda: session.names(1), "the terminal has its button")
        session.move(*session.bar(1).button(0))
        preview = self.preview()
        self.assertGreaterEqual(preview[0], 960 + 6)
        session.join_monitors()
        eventually(lambda: len(session.bars()) == 1, "the monitor's bar has gone")
        eventually(self.no_panels, "and its preview with it")
        self.assertIsNone(process.poll())


if __name__ == "__main__":
    unittest.main()
