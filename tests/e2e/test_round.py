"""The user's round: all that a working day does with the bar, one thing after the other in one session. It holds under any
window manager; where one can't, what it announces decides what is expected."""

import os
import shutil
import sys
import time
import unittest

from parts import MARGIN, Menus, Panels, Program, SearchBox
from session import WINDOW_MANAGER, SessionTest, eventually, foot, frame, is_full_screen

BAR, ROOM, TICK = (0, 1017, 1920, 63), 1080 - 63 - 5, 0.5
RED, BLUE = (192, 32, 32), (32, 32, 192)
AWAY = (1700, 500)


class Round(Menus, Panels, SearchBox, SessionTest):
    """Each step starts from the same screen, so that one that fails spoils none of the others."""

    def steps(self):
        return [self.the_bar_stands, self.a_click_brings_forward_and_the_next_goes_back, self.a_click_un_minimises,
                self.the_buttons_menu_hides_and_a_click_brings_back, self.a_button_is_dragged,
                self.hovering_tells_a_name, self.a_preview_shows_pictures_and_a_pick_raises, self.search_by_keyboard,
                self.search_by_mouse, self.menus_open_and_close, self.the_bars_menu_changes_a_setting,
                self.the_launcher_starts_a_program, self.the_desktop_is_shown_and_left_as_it_was,
                self.a_maximised_window_keeps_off, self.a_window_over_the_bar_is_lifted,
                self.full_screen_becomes_the_room_there_is, self.a_key_is_a_click, self.keys_hide_and_show_the_bar,
                self.the_bar_goes_to_the_other_edge]

    def test_round(self):
        self.launch()
        for step in self.steps():
            with self.subTest(step.__name__.replace("_", " ")):
                self.settle()
                step()
        self.assertIsNone(self.bar_process.poll(), "the bar has lived through it")

    def launch(self):
        session = self.session
        session.write_settings(showFinderButton=False)
        self.made = os.path.join(session.folder, "made")
        self.install("AAA First", "touch " + self.made)
        self.program = Program(session)
        self.red = self.program.open("Quarterly red", 0xC02020, 200, 150)
        self.blue = self.program.open("Quarterly blue", 0x2020C0, 230, 170)
        self.terminal = session.xterm("Terminal", "80x24+900+150")
        self.editor = session.open("L3afpad", "l3afpad")
        self.bar_process = session.start_bar()
        eventually(lambda: session.names() == ["Painter", "XTerm", "L3afpad"], "each has its button, the first opened first")

    def settle(self):
        """No menu or panel, all windows on the screen, the terminal used before the editor, which is in front."""
        session = self.session
        session.move(*AWAY)
        if self.has_keyboard() or self.panel():
            session.key("Escape")
        settings = session.settings()
        if not settings.get("barVisible", True) or settings.get("barEdge", "bottom") != "bottom":
            session.write_settings(barVisible=True, barEdge="bottom")
        eventually(lambda: session.bars() and session.geometry(session.bars()[0]) == BAR, "the bar is in its place")
        for window in (self.red, self.blue, self.terminal, self.editor):
            session.activate(window)
            eventually(lambda: window.id in session.shown(), "the window is on the screen")

    # Hands and eyes

    def click_button(self, name):
        self.session.click(self.button(name))

    def is_used(self, window):
        return self.session.active() == window.id == self.session.shown()[0]

    def comes_forward(self, window, why):
        eventually(lambda: self.is_used(window), why + ": it is active and in front")

    def state(self, window, change, *names):
        atoms = [self.session.atom("_NET_WM_STATE_" + name) for name in names]
        self.session.ask(window, "_NET_WM_STATE", change, *(atoms + [0])[:2], 2)

    def strut(self):
        return list(self.session.property(self.session.bars()[0], "_NET_WM_STRUT_PARTIAL"))

    def search(self, text, rows):
        self.press_into_field()
        self.session.type(text)
        eventually(lambda: self.rows() == rows, f"{rows} are found")

    def found(self, window):
        self.comes_forward(self.session.window(window), "what was found")
        eventually(lambda: self.belongs_to_keyboard(self.session.window(window)), "and has the keyboard")
        eventually(lambda: self.panel() is None, "the results are gone")

    # Steps

    def the_bar_stands(self):
        self.assertEqual(self.session.geometry(self.session.bars()[0]), BAR)
        self.assertEqual(self.strut(), [0, 0, 0, 68, 0, 0, 0, 0, 0, 0, 0, 1919])

    def a_click_brings_forward_and_the_next_goes_back(self):
        self.click_button("XTerm")
        self.comes_forward(self.terminal, "a click on its button")
        self.click_button("XTerm")
        self.comes_forward(self.editor, "a click on the button of what is in front goes back")

    def a_click_un_minimises(self):
        self.session.minimise(self.terminal)
        self.click_button("XTerm")
        self.comes_forward(self.terminal, "it is back")

    def the_buttons_menu_hides_and_a_click_brings_back(self):
        self.choose(self.button("L3afpad"), *self.entry(3))
        eventually(lambda: self.session.is_minimised(self.editor), "the editor is hidden")
        self.click_button("L3afpad")
        self.comes_forward(self.editor, "it is back")

    def a_button_is_dragged(self):
        session, bar = self.session, self.session.bar()
        session.drag(bar.button(0), bar.button(2))
        session.move(*AWAY)
        eventually(lambda: session.names() == ["XTerm", "L3afpad", "Painter"], "the first has become the last")
        eventually(lambda: self.setting("appOrder") == "manual" and len(self.setting("manualOrder")) == 3, "it is remembered")
        session.drag(bar.button(2), bar.button(0))
        session.move(*AWAY)
        eventually(lambda: session.names() == ["Painter", "XTerm", "L3afpad"], "and the first again")

    def hovering_tells_a_name(self):
        self.session.move(*self.session.bar().trash(3))
        x, y, width, height = self.tooltip()
        self.assertEqual(y + height, BAR[1] - 6)
        eventually(lambda: self.is_color((x + 5, y + height // 2), (36, 36, 36)), "the tooltip is painted")
        self.session.move(*AWAY)
        eventually(self.no_panels, "the tooltip goes with the pointer")

    def a_preview_shows_pictures_and_a_pick_raises(self):
        self.session.move(*self.button("Painter"))
        preview = self.preview()
        for index, color in enumerate((RED, BLUE)):
            eventually(lambda: self.is_color(self.card(preview, index), color), "each card has its window's picture")
        self.travel(self.button("Painter"), self.card(preview, 0))
        eventually(lambda: self.is_color((preview[0] + MARGIN - 3, preview[1] + MARGIN + 50), (59, 59, 59)),
                   "the card under the pointer is lit")
        self.session.press()
        self.session.release()
        self.comes_forward(self.red, "the card picked")
        eventually(self.no_panels, "the preview goes with the pick")

    def search_by_keyboard(self):
        # The windows are listed in the order in which they appeared.
        self.search("quarterly", 2)
        self.session.key("Return")
        self.found(self.red.id)
        self.search("quarterly", 2)
        self.session.key("Down", "Return")
        self.found(self.blue.id)

    def search_by_mouse(self):
        self.search("quarterly", 2)
        x, y, _, _ = self.panel()
        self.session.click((x + 100, y + 4 + 20))
        self.found(self.red.id)

    def menus_open_and_close(self):
        for place in (self.button("XTerm"), self.empty_bar(), self.session.bar().middle("launcher")):
            self.open(place)
            self.session.key("Escape")
            eventually(lambda: not self.menus() and not self.has_keyboard(), "Escape closes the menu")
            self.comes_forward(self.editor, "nothing else has changed")
            self.session.move(*AWAY)

    def the_bars_menu_changes_a_setting(self):
        for value in (True, False):
            self.choose(self.empty_bar(), *self.entry(1))
            eventually(lambda: self.setting("currentSpaceOnly") is value, "it is written")

    def the_launcher_starts_a_program(self):
        self.choose(self.session.bar().middle("launcher"), *self.entry(1))
        eventually(lambda: os.path.exists(self.made), "the program has run")

    def the_desktop_is_shown_and_left_as_it_was(self):
        session = self.session
        session.activate(self.terminal)
        eventually(lambda: self.is_used(self.terminal), "the terminal is in front")
        before = session.shown()
        session.click(session.bar().middle("showDesktop"))
        eventually(lambda: not session.shown(), "the screen is clear")
        session.move(*AWAY)
        eventually(session.is_showing_desktop, "and the bar says so")
        # A user's second click isn't that quick: what won't hide at once is asked again.
        eventually(lambda: "show desktop: hid" in session.log(), "clearing the screen is over")
        session.click(session.bar().middle("showDesktop"))
        eventually(lambda: set(session.shown()) == set(before), "the same windows are back")
        self.comes_forward(self.terminal, "what was in front before")
        # Nor is the next window that a user goes to: some managers are still handing the keyboard round.
        time.sleep(0.2)

    def a_maximised_window_keeps_off(self):
        self.state(self.terminal, 1, "MAXIMIZED_VERT", "MAXIMIZED_HORZ")
        try:
            eventually(lambda: self.session.geometry(self.terminal)[3] > 900, "it is maximised")
            eventually(lambda: sum(self.session.geometry(self.terminal)[1::2]) <= ROOM, "and clear of the bar")
        finally:
            self.state(self.terminal, 0, "MAXIMIZED_VERT", "MAXIMIZED_HORZ")
            eventually(lambda: self.session.geometry(self.terminal)[3] < 900, "it has its size back")

    def a_window_over_the_bar_is_lifted(self):
        window = self.program.create("over the bar", 0x20A040, 900, 850)
        try:
            eventually(lambda: window.id in self.session.shown(), "it is on the screen")
            eventually(lambda: foot(self.session, window) <= ROOM, "it is clear of the bar", 2 * TICK + 0.5)
        finally:
            self.program.close(window)
            eventually(lambda: self.session.active() not in (0, window.id), "another window is active")

    def full_screen_becomes_the_room_there_is(self):
        session, window = self.session, self.terminal
        session.activate(window)
        self.state(window, 1, "FULLSCREEN")
        try:
            eventually(lambda: not is_full_screen(session, window) and frame(session, window)[2] > 1880
                       and session.geometry(window)[3] > 900 and foot(session, window) <= ROOM, "it fills the room there is")
        finally:
            self.state(window, 0, "FULLSCREEN")
            self.state(window, 0, "MAXIMIZED_VERT", "MAXIMIZED_HORZ")
            session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0xF00 | 2 << 12, 900, 150, 484, 316)

    def a_key_is_a_click(self):
        self.session.key("Alt+2")
        self.comes_forward(self.terminal, "the second button's")
        self.session.key("Alt+1")
        eventually(lambda: self.session.active() in (self.red.id, self.blue.id), "the first button's")

    def keys_hide_and_show_the_bar(self):
        # A manager that has the Super key for itself is told of; it leaves the shortcut when Super goes down first.
        is_taken = "another program has" in self.session.log()
        keys = "Super+Alt+b" if is_taken else "Alt+Super+b"
        self.session.key(keys)
        eventually(lambda: not self.session.bars(), "the bar is hidden")
        self.session.key(keys)
        eventually(self.session.bars, "the bar is shown")

    def the_bar_goes_to_the_other_edge(self):
        self.session.write_settings(barEdge="top")
        eventually(lambda: self.session.geometry(self.session.bars()[0]) == (0, 0, 1920, 63), "it stands at the top")
        eventually(lambda: self.strut() == [0, 0, 68, 0, 0, 0, 0, 0, 0, 1919, 0, 0], "and reserves its place there")


class GermanRound(Round):
    """In a language that writes numbers with a comma."""

    def launch(self):
        self.session.speak_german()
        super().launch()


class InstalledRound(Round):
    """Where a file manager and other desktops' programs are installed."""

    WORLD = {"has_installed_programs": True}

    def launch(self):
        # Without its button the file manager would have one among the programs', where the steps count theirs.
        with open(os.path.join(self.session.environment["XDG_CONFIG_HOME"], "mimeapps.list"), "w", encoding="ascii") as file:
            file.write("[Removed Associations]\ninode/directory=pcmanfm.desktop;\n")
        super().launch()


if __name__ == "__main__":
    manager = WINDOW_MANAGER.split()[0]
    if not shutil.which(manager):
        print(manager, "isn't installed")
        sys.exit(77)
    unittest.main(verbosity=2)
