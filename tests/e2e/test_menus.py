"""The bar's menus: every entry of each, by keyboard and by mouse, on both edges."""

import os
import time
import unittest

from parts import Menus
from session import SessionTest, eventually


class MenuTest(Menus, SessionTest):
    def setUp(self):
        super().setUp()
        self.settings(showFinderButton=False, showTooltips=False, showWindowPreviews=False)

    def settings(self, **values):
        self.session.write_settings(**values)


class EntriesTest(MenuTest):
    def test_each_of_a_buttons_menu(self):
        session = self.session
        session.start_bar()
        editor, terminal = session.open("L3afpad", "l3afpad"), session.xterm()
        pick = lambda number: self.choose(self.button("L3afpad"), *self.entry(number))
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "both have a button")
        session.minimise(editor)
        self.choose(self.button("L3afpad"), "Down", "Right", "Return")
        eventually(lambda: session.active() == editor.id, "a window of the submenu comes forward")
        self.assertFalse(session.is_minimised(terminal))
        pick(3)
        eventually(lambda: session.is_minimised(editor), "the program is hidden")
        pick(3)
        eventually(lambda: not session.is_minimised(editor), "the same entry shows it")
        pick(4)
        eventually(lambda: self.setting("extraPinnedPaths") == ["/Applications/L3afpad.app"], "it is pinned")
        eventually(lambda: session.names().count("L3afpad") == 1, "and has one button")
        pick(4)
        eventually(lambda: not self.setting("extraPinnedPaths"), "it is pinned no more")
        for number in (5, 6):
            pick(number)
            eventually(lambda: not session.windows_of("L3afpad"), f"entry {number} ends it")
            eventually(lambda: session.names() == ["XTerm"], "and its button goes")
            session.open("L3afpad", "l3afpad")
            eventually(lambda: session.names() == ["XTerm", "L3afpad"], "it has its button again")
        pick(2)
        eventually(lambda: len(session.windows_of("L3afpad")) == 2, "a second window", 20)

    def test_it_stays_though_keys_and_the_focus_are_told_of_late(self):
        session = self.session
        session.start_bar()
        session.xterm()
        self.open(self.empty_bar())
        session.key("Alt", "Super")
        time.sleep(0.3)
        self.assertTrue(self.menus() and self.has_keyboard(), "a key that does nothing by itself closes it")
        session.key("Escape")
        eventually(lambda: not self.menus(), "Escape does")
        for _ in range(5):
            session.click(session.bar().middle("search"))
            eventually(lambda: session.popups("COMBO") or session.active() != 0, "the search box has the keyboard")
            session.key("Escape")
            self.open(self.empty_bar())
            time.sleep(0.3)
            self.assertTrue(self.menus() and self.has_keyboard(), "it goes with the focus of the search box")
            session.key("Escape")
            eventually(lambda: not self.menus(), "it is closed")

    def test_each_of_the_bars_menu(self):
        session = self.session
        program = session.start_bar()
        pick = lambda number: self.choose(self.empty_bar(), *self.entry(number))
        pick(4)
        eventually(lambda: not session.bars(), "the bar is gone")
        self.assertIs(self.setting("barVisible"), False)
        self.settings(barVisible=True)
        eventually(session.bars, "the bar is back")
        pick(5)
        self.assertIsNone(program.poll(), "the entry before the last doesn't end it")
        x, y, width, height = session.geometry(self.open(self.empty_bar()))
        session.click((x + width // 2, y + height - 16))
        self.assertEqual(program.wait(10), 0)
        program = session.start_bar()
        self.open(self.empty_bar())
        session.key("Super+q")
        self.assertEqual(program.wait(10), 0, "a shortcut works while the menu is open")

    def test_many_and_odd_ones_of_the_launcher_do_no_harm(self):
        made, script = (os.path.join(self.session.folder, name) for name in ("made", "script"))
        with open(script, "w", encoding="ascii") as file:
            file.write(f"grep -E 'Sig(Blk|Ign)' /proc/self/status > {made}.part; mv {made}.part {made}\n")
        for number in range(500):
            self.install(f"Program {number}", "true " + str(number), f"Icon={'missing' if number % 2 else 'l3afpad'}")
        self.install("A" * 10000, "true long")
        self.install("Aa two\\nlines & a\\ttab", "true odd")
        self.install("Ab \u041f\u043e\u0447\u0442\u0430 \u30e1\u30fc\u30eb", "true script")
        self.install("AAA broken", "/no/such/program")
        self.install("zzz Last", "sh " + script)
        program = self.session.start_bar()
        launcher = self.session.bar().middle("launcher")
        x, y, width, height = self.session.geometry(self.open(launcher))
        self.assertGreaterEqual(y, 0)
        self.assertLessEqual(y + height, 1080)
        self.assertLess(width, 700)
        self.session.key("Up", "Return")
        eventually(lambda: os.path.exists(made), "the last one is reached from the first")
        with open(made, encoding="ascii") as file:
            self.assertEqual(file.read(), f"SigBlk:\t{0:016x}\nSigIgn:\t{0:016x}\n", "no signal is switched off for it")
        self.choose(launcher, *self.entry(2))
        eventually(lambda: "can't be opened" in self.session.log(), "a launch that fails is told")
        self.assertIsNone(program.poll())


class BehaviourTest(MenuTest):
    def test_the_menu_has_the_keyboard_and_a_press_elsewhere_just_closes_it(self):
        typed = os.path.join(self.session.folder, "typed")
        self.session.start_bar()
        first = self.session.open("XTerm", "xterm", "-geometry", "80x24+200+150", "-e", "sh", "-c", f"cat > {typed}")
        eventually(lambda: self.session.active() == first.id, "the terminal is active")
        eventually(lambda: os.path.exists(typed), "and listens")
        self.open(self.empty_bar())
        self.session.key("x", "Down", "Down", "x")
        self.assertEqual(self.session.active(), first.id)
        self.session.key("Escape")
        eventually(lambda: not self.menus(), "Escape closes the menu")
        self.session.key("y", "Return")
        eventually(lambda: open(typed, encoding="ascii").read() == "y\n", "the terminal gets what is typed, and no more")
        self.assertEqual(self.setting("currentSpaceOnly"), None)

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

    def test_menus_open_inside_the_screen_on_both_edges_and_go_with_their_monitor(self):
        session = self.session
        session.xterm()
        for edge in ("top", "bottom"):
            self.settings(barEdge=edge)
            session.restart_bar()
            eventually(lambda: session.names() == ["XTerm"], "the terminal has its button")
            bar = session.bar()
            for place in (bar.middle("launcher"), bar.button(0), (1918, bar.y + 4), (1, bar.y + bar.height - 2)):
                x, y, width, height = session.geometry(self.open(place))
                self.assertTrue(0 <= x and x + width <= 1920 and 0 <= y and y + height <= 1080,
                                f"{edge}: {x},{y} {width}x{height} for a click at {place}")
                session.key("Escape")
                eventually(lambda: not self.menus(), "Escape closes the menu")
        session.split_monitors()
        eventually(lambda: len(session.bars()) == 2, "a bar on each monitor")
        x, y, _, height = session.geometry(session.bars()[1])
        self.open((x + 800, y + height // 2))
        session.join_monitors()
        eventually(lambda: len(session.bars()) == 1, "one bar is left")
        eventually(lambda: not self.menus(), "and no menu")
        self.open((700, y + height // 2))


if __name__ == "__main__":
    unittest.main(verbosity=2)
