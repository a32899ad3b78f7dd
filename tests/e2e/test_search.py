"""The search box: it takes the keyboard, finds windows and programs, opens them, and gives the keyboard back."""

import subprocess
import unittest

from parts import SearchBox
from session import SessionTest, eventually


class SearchTest(SearchBox, SessionTest):
    def setUp(self):
        super().setUp()
        self.session.write_settings(barEdge="top")
        self.session.start_bar()
        self.terminal = self.session.xterm("Quarterly figures")
        self.editor = self.session.open("L3afpad", "l3afpad")
        eventually(lambda: self.session.active() == self.editor.id, "the editor is active")
        eventually(lambda: set(self.session.names()) >= {"XTerm", "L3afpad"}, "both have a button")

    def test_it_is_a_field_like_any_other_that_gives_the_keyboard_back(self):
        session = self.session
        self.press_into_field()
        session.type("quarterlyq")
        eventually(lambda: self.rows() == 0, "nothing is found")
        session.key("Return", "BackSpace")
        eventually(lambda: self.rows() == 1, "the window is found again")
        session.key("Control+a", "Control+x")
        eventually(lambda: self.rows() == 0, "all was cut")
        session.key("Control+v")
        eventually(lambda: self.rows() == 1, "and pasted")
        x, y, _, _ = self.panel()
        self.assertEqual(x, session.bar().places["search"][0])
        self.assertLessEqual(y, session.bar().height, "the panel touches the box")
        self.assertTrue(self.bar_has_keyboard())
        session.key("Escape")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")
        eventually(lambda: session.active() == self.editor.id, "and is active")
        eventually(lambda: self.panel() is None, "the panel is gone")
        self.press_into_field()
        session.type("y")
        eventually(lambda: self.rows() >= 1, "the field was empty: a y alone is found")
        x, y, width, height = session.geometry(self.editor)
        session.click((x + width // 2, y + height // 2))
        eventually(lambda: self.belongs_to_keyboard(self.editor), "a click elsewhere takes the keyboard")
        self.press_into_field()
        session.key("Escape")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "and another press starts anew")

        bar = session.bar()
        session.click(bar.button(session.names().index("XTerm")))
        eventually(lambda: self.belongs_to_keyboard(self.terminal), "the terminal has the keyboard")
        session.click((bar.x + 1600, bar.y + bar.height // 2))
        self.assertFalse(self.bar_has_keyboard(), "clicks beside the field never take it")

        session.xterm("x").change_property(session.atom("_NET_WM_NAME"), session.atom("UTF8_STRING"), 8,
                                           "Квартальный отчёт".encode())
        session.display.sync()
        self.press_into_field()
        subprocess.run(["setxkbmap", "ru"], env=session.environment, check=True)
        session.key(*("Shift+" + key for key in ("j", "n", "x", "grave", "n")))
        eventually(lambda: self.rows() == 1, "ОТЧЁТ finds отчёт")

    def test_it_ends_with_the_bar_its_monitor_and_without_the_window_that_it_came_from(self):
        session = self.session
        self.press_into_field()
        session.type("quarterly")
        eventually(lambda: self.rows() == 1, "something is found")
        session.write_settings(barVisible=False)
        eventually(lambda: not session.bars(), "the bar is hidden")
        eventually(lambda: self.panel() is None, "nothing stays behind")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")

        session.write_settings(barVisible=True)
        session.split_monitors()
        eventually(lambda: len(session.bars()) == 2, "each monitor has a bar")
        right = session.bars()[1]
        session.click(session.bar(1).middle("search"))
        eventually(lambda: self.belongs_to_keyboard(right), "the right bar has the keyboard")
        session.type("quarterly")
        eventually(lambda: self.rows() == 1, "something is found")
        session.join_monitors()
        eventually(lambda: len(session.bars()) == 1, "its bar is gone")
        eventually(lambda: self.panel() is None, "nothing stays behind")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")

        self.press_into_field()
        self.editor.destroy()
        session.display.sync()
        eventually(lambda: "L3afpad" not in session.names(), "the editor is gone")
        session.key("Escape")
        eventually(lambda: not self.bar_has_keyboard(), "the bar has given the keyboard back")
        eventually(lambda: self.belongs_to_keyboard(self.terminal), "to what is left")


if __name__ == "__main__":
    unittest.main(verbosity=2)
