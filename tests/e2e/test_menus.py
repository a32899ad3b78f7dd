"""The bar's menus: every entry of each, by keyboard and by mouse, on both edges."""

import os
import unittest

from parts import Menus
from session import SessionTest, eventually


class MenuTest(Menus, SessionTest):
    def setUp(self):
        super().setUp()
        self.settings(showFinderButton=False, showTooltips=False, showWindowPreviews=False)

    def settings(self, **values):
        self.session.write_settings(**values)


class ItemMenuTest(MenuTest):
    def setUp(self):
        super().setUp()
        self.session.start_bar()
        self.editor = self.session.open("L3afpad", "l3afpad")
        eventually(lambda: self.session.names() == ["L3afpad"], "the editor has its button")

    def pick(self, number):
        self.choose(self.button("L3afpad"), *self.entry(number))

    def test_a_window_of_the_submenu_comes_forward(self):
        terminal = self.session.xterm()
        self.session.minimise(self.editor)
        self.choose(self.button("L3afpad"), "Down", "Right", "Return")
        eventually(lambda: self.session.active() == self.editor.id, "the window is active")
        self.assertFalse(self.session.is_minimised(self.editor))
        self.assertFalse(self.session.is_minimised(terminal))

    def test_a_new_window_opens(self):
        self.pick(2)
        eventually(lambda: len(self.session.windows_of("L3afpad")) == 2, "a second window", 20)

    def test_it_is_hidden_and_shown(self):
        self.pick(3)
        eventually(lambda: self.session.is_minimised(self.editor), "the program is hidden")
        self.pick(3)
        eventually(lambda: not self.session.is_minimised(self.editor), "the same entry shows it")

    def test_it_is_pinned_and_unpinned(self):
        self.pick(4)
        eventually(lambda: self.setting("extraPinnedPaths") == ["/Applications/L3afpad.app"], "it is pinned")
        eventually(lambda: len(self.session.names()) == 1, "and has one button")
        self.pick(4)
        eventually(lambda: not self.setting("extraPinnedPaths"), "it is pinned no more")

    def test_it_quits(self):
        for number in (5, 6):
            eventually(lambda: self.session.names() == ["L3afpad"], "the editor has its button")
            self.pick(number)
            eventually(lambda: not self.session.windows_of("L3afpad"), f"entry {number} ends it")
            eventually(lambda: self.session.names() == [], "and its button goes")
            self.editor = self.session.open("L3afpad", "l3afpad")


class BarMenuTest(MenuTest):
    def setUp(self):
        super().setUp()
        self.program = self.session.start_bar()
        self.terminal = self.session.xterm()
        eventually(lambda: self.session.names() == ["XTerm"], "the terminal has its button")

    def pick(self, number):
        self.choose(self.empty_bar(), *self.entry(number))

    def test_ticks_are_written_to_the_settings(self):
        for number, name, values in ((1, "currentSpaceOnly", (True, False)), (2, "autoFitWindows", (False, True))):
            for value in values:
                self.pick(number)
                eventually(lambda: self.setting(name) is value, f"{name} is {value}")

    def test_the_desktop_is_shown_and_the_windows_restored(self):
        self.pick(3)
        eventually(lambda: self.session.is_minimised(self.terminal), "the screen is clear")
        eventually(self.session.is_showing_desktop, "and the bar says so")
        self.pick(3)
        eventually(lambda: not self.session.is_minimised(self.terminal), "the window is back")

    def test_the_bar_hides(self):
        self.pick(4)
        eventually(lambda: not self.session.bars(), "the bar is gone")
        self.assertIs(self.setting("barVisible"), False)
        self.settings(barVisible=True)
        eventually(self.session.bars, "the bar is back")
        self.pick(5)
        self.assertIsNone(self.program.poll(), "the entry before the last doesn't end it")

    def test_the_program_quits(self):
        menu = self.open(self.empty_bar())
        x, y, width, height = self.session.geometry(menu)
        self.session.click((x + width // 2, y + height - 16))
        self.assertEqual(self.program.wait(10), 0)

    def test_a_shortcut_works_while_the_menu_is_open(self):
        self.open(self.empty_bar())
        self.session.key("Super+q")
        self.assertEqual(self.program.wait(10), 0)


class LauncherMenuTest(MenuTest):
    def test_a_program_starts(self):
        made, script = (os.path.join(self.session.folder, name) for name in ("made", "script"))
        with open(script, "w", encoding="ascii") as file:
            file.write(f"grep -E 'Sig(Blk|Ign)' /proc/self/status > {made}.part; mv {made}.part {made}\n")
        self.install("AAA First", f"sh {script}")
        self.session.start_bar()
        self.choose(self.session.bar().middle("launcher"), *self.entry(1))
        eventually(lambda: os.path.exists(made), "the program has run")
        with open(made, encoding="ascii") as file:
            self.assertEqual(file.read(), f"SigBlk:\t{0:016x}\nSigIgn:\t{0:016x}\n", "no signal is switched off for it")

    def test_many_and_odd_entries_do_no_harm(self):
        made = os.path.join(self.session.folder, "made")
        for number in range(500):
            self.install(f"Program {number}", "true " + str(number), f"Icon={'missing' if number % 2 else 'l3afpad'}")
        self.install("A" * 10000, "true long")
        self.install("Aa two\\nlines & a\\ttab", "true odd")
        self.install("Ab \u041f\u043e\u0447\u0442\u0430 \u30e1\u30fc\u30eb", "true script")
        self.install("AAA broken", "/no/such/program")
        self.install("zzz Last", f"touch {made}")
        program = self.session.start_bar()
        launcher = self.session.bar().middle("launcher")
        menu = self.open(launcher)
        x, y, width, height = self.session.geometry(menu)
        self.assertGreaterEqual(y, 0)
        self.assertLessEqual(y + height, 1080)
        self.assertLess(width, 700)
        self.session.key("Up", "Return")
        eventually(lambda: os.path.exists(made), "the last one is reached from the first")
        self.choose(launcher, *self.entry(2))
        eventually(lambda: "can't be opened" in self.session.log(), "a launch that fails is told")
        self.assertIsNone(program.poll())


class BehaviourTest(MenuTest):
    def test_the_menu_has_the_keyboard_and_gives_it_back(self):
        typed = os.path.join(self.session.folder, "typed")
        self.session.start_bar()
        terminal = self.session.open("XTerm", "xterm", "-geometry", "80x24+200+150", "-e", "sh", "-c", f"cat > {typed}")
        eventually(lambda: self.session.active() == terminal.id, "the terminal is active")
        eventually(lambda: os.path.exists(typed), "and listens")
        self.open(self.empty_bar())
        self.session.key("x", "Down", "Down", "x")
        self.assertEqual(self.session.active(), terminal.id)
        self.session.key("Escape")
        eventually(lambda: not self.menus(), "Escape closes the menu")
        self.session.key("y", "Return")
        eventually(lambda: open(typed, encoding="ascii").read() == "y\n", "the terminal gets what is typed, and no more")
        self.assertEqual(self.setting("currentSpaceOnly"), None)

    def test_a_press_elsewhere_closes_the_menu_and_does_nothing_else(self):
        self.session.start_bar()
        first = self.session.xterm("first", "80x24+100+100")
        second = self.session.xterm("second", "80x24+700+100")
        eventually(lambda: self.session.names() == ["XTerm", "XTerm"], "both have a button")
        bar = self.session.bar()
        for place in ((300, 800), bar.button(0)):
            self.open(self.empty_bar())
            self.session.click(place)
            eventually(lambda: not self.menus(), "the menu closes")
        # What comes later shows that the presses did nothing.
        self.choose(self.empty_bar(), *self.entry(1))
        eventually(lambda: self.setting("currentSpaceOnly") is True, "the next menu works")
        self.assertEqual(self.session.active(), second.id)
        self.session.click(bar.button(0))
        eventually(lambda: self.session.active() == first.id, "and so does the next click")

    def test_menus_open_inside_the_screen_on_both_edges(self):
        for edge in ("bottom", "top"):
            self.settings(barEdge=edge)
            self.session.restart_bar()
            if edge == "bottom":
                self.session.xterm()
            eventually(lambda: self.session.names() == ["XTerm"], "the terminal has its button")
            bar = self.session.bar()
            for place in (bar.middle("launcher"), bar.button(0), (1918, bar.y + 4), (1, bar.y + bar.height - 2)):
                x, y, width, height = self.session.geometry(self.open(place))
                self.assertTrue(0 <= x and x + width <= 1920 and 0 <= y and y + height <= 1080,
                                f"{edge}: {x},{y} {width}x{height} for a click at {place}")
                self.session.key("Escape")
                eventually(lambda: not self.menus(), "Escape closes the menu")

    def test_the_menu_goes_with_its_monitor(self):
        self.session.start_bar(wait=False)
        self.session.split_monitors()
        eventually(lambda: len(self.session.bars()) == 2, "a bar on each monitor")
        x, y, _, height = self.session.geometry(self.session.bars()[1])
        self.open((x + 800, y + height // 2))
        self.session.join_monitors()
        eventually(lambda: len(self.session.bars()) == 1, "one bar is left")
        eventually(lambda: not self.menus(), "and no menu")
        self.open((700, y + height // 2))
        self.session.key("Escape")
        eventually(lambda: not self.menus(), "the menus of the other bar work")


if __name__ == "__main__":
    unittest.main(verbosity=2)
