"""What happens to a desktop from morning to evening. After each of it the bar is as it was, and works."""

import os
import signal
import subprocess
import time
import unittest

from parts import Counter, Menus
from session import Session, eventually
from Xlib import display


class LongDayTest(Menus, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        session = cls.session = cls.enterClassContext(Session())
        session.write_settings(showFinderButton=False, showTooltips=False, showWindowPreviews=False)
        cls.bar = session.start_bar()
        cls.terminal, cls.editor = session.xterm(), session.open("L3afpad", "l3afpad")
        eventually(lambda: session.names() == ["XTerm", "L3afpad"], "both have a button")
        cls.place = session.geometry(session.bars()[0])

    def tearDown(self):
        self.check()

    def check(self):
        """It stands, shows, and does what it is asked to by the mouse, by a key and by its menu."""
        session = self.session
        eventually(lambda: [session.geometry(bar) for bar in session.bars()] == [self.place], "the one bar is in its place")
        eventually(lambda: session.names() == ["XTerm", "L3afpad"], "the buttons are right")
        session.activate(self.editor)
        for window, ask in ((self.terminal, lambda: session.click(self.button("XTerm"))),
                            (self.editor, lambda: session.key("Alt+2")), (self.terminal, lambda: session.key("Alt+1"))):
            ask()
            eventually(lambda window=window: session.active() == window.id, "the window comes forward")
        self.open(self.empty_bar())
        session.key("Escape")
        eventually(lambda: not self.menus(), "the menu goes")
        self.assertIsNone(self.bar.poll())

    def test_the_machine_sleeps(self):
        """As a program has it: it doesn't run for a while, and much has happened when it does again."""
        session = self.session
        os.kill(self.bar.pid, signal.SIGSTOP)
        passing = session.xterm("passing")
        session.display.sync()
        time.sleep(3)
        session.ask(passing, "_NET_CLOSE_WINDOW", 0, 2)
        eventually(lambda: len(session.windows_of("XTerm")) == 1, "it has gone")
        os.kill(self.bar.pid, signal.SIGCONT)

    def test_the_window_manager_freezes(self):
        session = self.session
        os.kill(session.window_manager.pid, signal.SIGSTOP)
        # It may hold the pointer back from everybody with this one.
        session.click(self.button("L3afpad"))
        time.sleep(5)
        os.kill(session.window_manager.pid, signal.SIGCONT)
        eventually(lambda: session.active() == self.editor.id, "what was asked for is done")

    def test_another_client_grabs_the_server(self):
        other = display.Display(self.session.environment["DISPLAY"])
        other.grab_server()
        other.sync()
        time.sleep(5)
        other.ungrab_server()
        other.close()

    def test_the_screen_is_blanked(self):
        for state in ("activate", "reset"):
            subprocess.run(["xset", "s", state], env=self.session.environment, check=True)
            time.sleep(0.5)

    def test_monitors_go_and_come_under_other_names(self):
        session = self.session
        for left, right in (("A", "B"), ("C", "A")):
            session.set_monitor(left, "960/250x1080/280+0+0", "screen")
            session.set_monitor(right, "960/250x1080/280+960+0", "none")
            eventually(lambda: len(session.bars()) == 2, "a bar on each")
            for name in (left, right):
                subprocess.run(["xrandr", "--delmonitor", name], env=session.environment, check=True, capture_output=True)
            eventually(lambda: len(session.bars()) == 1, "one again")

    def test_the_keyboard_has_another_layout(self):
        for layout in ("de", "us"):
            subprocess.run(["setxkbmap", layout], env=self.session.environment, check=True)
            self.session.display.sync()
            self.session.key("Alt+2")
            eventually(lambda: self.session.active() == self.editor.id, f"a key works in {layout}")
            self.session.key("Alt+1")
            eventually(lambda: self.session.active() == self.terminal.id, "and the other")

    def test_the_session_bus_goes_and_comes(self):
        """What is told on the new one is heard."""
        session = self.session
        session.move(900, 300)
        badge = lambda: session.picture(session.bar().button(0)[0] + 8, session.bar().y + 8, 10, 10).tobytes()
        without = badge()
        for _ in range(2):
            session.end_bus()
            self.check()
            session.move(900, 300)
            eventually(lambda: badge() == without, "nobody has told of a badge")
            session.start_bus("--address", session.environment["DBUS_SESSION_BUS_ADDRESS"])
            counter = Counter(session, "debian-xterm.desktop")
            eventually(lambda: counter.tell(7) or badge() != without, "a badge is told of")
        counter.end()
        eventually(lambda: badge() == without, "it goes with its sender")

    def test_the_theme_of_icons_changes(self):
        session = self.session
        path = os.path.join(session.environment["XDG_CONFIG_HOME"], "gtk-3.0")
        os.makedirs(path, exist_ok=True)
        with open(os.path.join(path, "settings.ini"), "w", encoding="ascii") as file:
            file.write("[Settings]\ngtk-icon-theme-name=Nonesuch\ngtk-application-prefer-dark-theme=1\n")
        time.sleep(1)


if __name__ == "__main__":
    unittest.main()
