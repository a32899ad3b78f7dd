"""The search box: it takes the keyboard, finds windows and programs, opens them, and gives the keyboard back."""

import subprocess
import unittest

from parts import SearchBox
from session import SessionTest, eventually


class SearchAtAnEdge(SearchBox):
    EDGE = "bottom"

    def setUp(self):
        super().setUp()
        self.session.write_settings(barEdge=self.EDGE)
        self.session.start_bar()
        self.terminal = self.session.xterm("Quarterly figures")
        self.editor = self.session.open("L3afpad", "l3afpad")
        eventually(lambda: self.session.active() == self.editor.id, "the editor is active")
        eventually(lambda: set(self.session.names()) >= {"XTerm", "L3afpad"}, "both have a button")

    # What must hold at either edge

    def test_typing_finds_a_window_and_return_raises_it(self):
        self.press_into_field()
        self.session.type("quarterly")
        eventually(lambda: self.rows() == 1, "one window is found")
        box = self.session.bar().places["search"][0] + self.session.bar().x
        x, y, _, height = self.panel()
        bar = self.session.geometry(self.session.bars()[0])
        self.assertEqual(x, box)
        inside = bar[1] <= y + height <= bar[1] + bar[3] if self.EDGE == "bottom" else bar[1] <= y <= bar[1] + bar[3]
        self.assertTrue(inside, "the panel touches the box")
        self.session.key("Return")
        eventually(lambda: self.session.active() == self.terminal.id, "the terminal is active")
        eventually(lambda: self.belongs_to_keyboard(self.terminal), "and has the keyboard")
        eventually(lambda: self.panel() is None, "the panel is gone")
        self.session.type("x")
        self.assertIsNone(self.panel(), "what is typed goes elsewhere")


class SearchTest(SearchAtAnEdge, SessionTest):
    def test_any_script_can_be_typed(self):
        self.session.xterm("x").change_property(
            self.session.atom("_NET_WM_NAME"), self.session.atom("UTF8_STRING"), 8, "Квартальный отчёт".encode())
        self.session.display.sync()
        self.press_into_field()
        subprocess.run(["setxkbmap", "ru"], env=self.session.environment, check=True)
        for key in ("j", "n", "x", "grave", "n"):
            self.session.key("Shift+" + key)
        eventually(lambda: self.rows() == 1, "ОТЧЁТ finds отчёт")

    def test_escape_gives_the_keyboard_back_and_empties_the_field(self):
        self.press_into_field()
        self.session.type("quarter")
        eventually(lambda: self.rows() == 1, "something is found")
        self.session.key("Escape")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")
        eventually(lambda: self.session.active() == self.editor.id, "and is active")
        eventually(lambda: self.panel() is None, "the panel is gone")
        self.press_into_field()
        self.session.type("y")
        eventually(lambda: self.rows() >= 1, "the field was empty: a y alone is found")

    def test_text_that_finds_nothing_closes_the_panel_and_a_match_opens_it_again(self):
        self.press_into_field()
        self.session.type("quarterlyq")
        eventually(lambda: self.rows() == 0, "nothing is found")
        self.session.key("Return")
        self.session.key("BackSpace")
        eventually(lambda: self.rows() == 1, "the window is found again")
        self.session.key("Control+a")
        self.session.key("Control+x")
        eventually(lambda: self.rows() == 0, "all was cut")
        self.session.key("Control+v")
        eventually(lambda: self.rows() == 1, "and pasted")
        self.assertTrue(self.bar_has_keyboard())

    def test_keys_and_the_mouse_choose_a_row(self):
        second = self.session.xterm("Quarterly report")
        self.press_into_field()
        self.session.type("quarterly")
        eventually(lambda: self.rows() == 2, "two windows are found")
        self.session.key("Down")
        self.session.key("Return")
        eventually(lambda: self.session.active() in (self.terminal.id, second.id), "one is active")
        by_keyboard = self.session.active()
        self.press_into_field()
        self.session.type("quarterly")
        eventually(lambda: self.rows() == 2, "two windows are found")
        x, y, _, _ = self.panel()
        self.session.click((x + 100, y + 64))
        eventually(lambda: self.panel() is None, "the panel is gone")
        eventually(lambda: self.session.active() in (self.terminal.id, second.id), "a terminal is active")
        eventually(lambda: not self.bar_has_keyboard(), "the bar has given the keyboard back")
        self.assertIn(by_keyboard, (self.terminal.id, second.id))

    def test_a_click_elsewhere_takes_the_keyboard_and_another_press_starts_anew(self):
        self.press_into_field()
        x, y, width, height = self.session.geometry(self.editor)
        self.session.click((x + width // 2, y + height // 2))
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard")
        self.press_into_field()
        self.session.key("Escape")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")

    def test_clicks_beside_the_field_never_take_the_keyboard(self):
        bar = self.session.bar()
        self.session.click(bar.button(self.session.names().index("XTerm")))
        eventually(lambda: self.belongs_to_keyboard(self.terminal), "the terminal has the keyboard")
        self.session.click((bar.x + 1600, bar.y + bar.height // 2))
        self.assertFalse(self.bar_has_keyboard())

    def test_a_window_that_goes_meanwhile_is_not_missed(self):
        self.press_into_field()
        self.editor.destroy()
        self.session.display.sync()
        eventually(lambda: "L3afpad" not in self.session.names(), "the editor is gone")
        self.session.key("Escape")
        eventually(lambda: not self.bar_has_keyboard(), "the bar has given the keyboard back")
        eventually(lambda: self.belongs_to_keyboard(self.terminal), "to what is left")

    def test_hiding_the_bar_ends_the_search(self):
        self.press_into_field()
        self.session.type("quarterly")
        eventually(lambda: self.rows() == 1, "something is found")
        self.session.write_settings(barVisible=False, barEdge=self.EDGE)
        eventually(lambda: not self.session.bars(), "the bar is hidden")
        eventually(lambda: self.panel() is None, "nothing stays behind")
        eventually(lambda: self.belongs_to_keyboard(self.editor), "the editor has the keyboard again")


    def test_a_search_ends_with_its_monitor(self):
        session = self.session
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


class SearchAtTheTopTest(SearchAtAnEdge, SessionTest):
    EDGE = "top"


if __name__ == "__main__":
    unittest.main(verbosity=2)
