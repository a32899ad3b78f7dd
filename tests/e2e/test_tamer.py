"""Windows of real programs stay clear of the bar, which is 63 points high; 5 more are kept free."""

import os
import signal
import time
import unittest

from Xlib import X, Xutil, display

from session import Client, SessionTest, eventually, foot, frame

CLEAR = 1080 - 63 - 5
TICK = 0.5


class Watch:
    """What is asked of the window manager about a window's place, and how often the window gets another one."""

    def __init__(self, session, window):
        self.display = display.Display(session.environment["DISPLAY"])
        self.window = self.display.create_resource_object("window", window.id)
        self.display.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.window.change_attributes(event_mask=X.StructureNotifyMask)
        self.asked = self.display.intern_atom("_NET_MOVERESIZE_WINDOW")
        self.display.sync()

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        self.display.close()

    def during(self, seconds):
        """How many requests there were, and how many different sizes."""
        time.sleep(seconds)
        requests, sizes = 0, []
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == X.ClientMessage and event.client_type == self.asked and event.window.id == self.window.id:
                requests += 1
            if event.type == X.ConfigureNotify and event.window.id == self.window.id:
                sizes.append((event.width, event.height))
        return requests, len(set(sizes))


class TamerTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.program = self.session.start_bar()

    def move(self, window, x, y, width=0, height=0):
        parts = 0x300 | (0xC00 if width else 0)
        self.session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | parts | 2 << 12, x, y, width, height)

    def test_a_terminal_dragged_over_the_bar_fills_the_room_and_rests(self):
        session = self.session
        terminal = session.xterm("dragged", "80x50+200+150")
        other = session.xterm("unfocused", "80x24+900+150")
        self.move(other, 900, 800)
        self.move(terminal, 200, 500)
        session.activate(terminal)
        eventually(lambda: frame(session, terminal)[2] > 1880 and foot(session, terminal) <= CLEAR, "it is clear")
        self.assertGreater(foot(session, terminal), CLEAR - 30, "to within a line of text")
        with Watch(session, terminal) as watch:
            self.assertEqual(watch.during(4 * TICK), (0, 0))
        self.assertGreater(foot(session, other), CLEAR, "the other isn't focused")

        session.write_settings(autoFitWindows=False)
        session.activate(other)
        with Watch(session, other) as watch:
            self.assertEqual(watch.during(4 * TICK), (0, 0))
        session.write_settings(autoFitWindows=True, barEdge="top")
        session.activate(terminal)
        eventually(lambda: 68 <= frame(session, terminal)[1] <= 70, "it follows the bar to the other edge")

    def test_floating_windows_are_lifted_as_they_are(self):
        session, client = self.session, Client(self.session)
        session.write_settings(autoFitWindows=False)
        notice = client.open(1500, 960, 300, 100, "NOTIFICATION")
        dialog = client.open(300, 300, 400, 150, "DIALOG", ["ABOVE"])
        plain = client.open(800, 300, 400, 150)
        for window, x in ((notice, 1500), (dialog, 300), (plain, 800)):
            self.move(window, x, 960)
        for window, size in ((notice, (300, 100)), (dialog, (400, 150))):
            eventually(lambda: foot(session, window) == CLEAR, "it stands just above the bar")
            self.assertEqual(session.geometry(window)[2:], size)
        self.assertGreater(foot(session, plain), CLEAR)

    def test_what_is_maximised_is_left_alone_and_what_cannot_shrink_asked_as_often_as_it_must(self):
        session, client = self.session, Client(self.session)
        terminal = session.xterm()
        session.ask(terminal, "_NET_WM_STATE", 1, session.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
                    session.atom("_NET_WM_STATE_MAXIMIZED_HORZ"), 2)
        eventually(lambda: session.geometry(terminal)[3] > 900, "it is maximised")
        with Watch(session, terminal) as watch:
            self.assertEqual(watch.during(4 * TICK)[0], 0)
        self.assertIn("_NET_WM_STATE_MAXIMIZED_VERT", session.atoms(terminal, "_NET_WM_STATE"))

        window = client.open(100, 50, 500, 1050, flags=Xutil.PMinSize, min_width=500, min_height=1050)
        session.activate(window)
        with Watch(session, window) as watch:
            ticks = 8
            requests, sizes = watch.during(ticks * TICK)
        self.assertGreaterEqual(requests, 2)
        self.assertLessEqual(requests, (ticks // 2 + 1) * (1 + 3))
        self.assertLessEqual(sizes, 2)

    def test_a_stopped_program_and_a_dying_one_hold_nobody_up(self):
        session = self.session
        terminal = session.xterm("stopped", "80x50+200+150")
        process = session.processes[-1]
        os.kill(process.pid, signal.SIGSTOP)
        self.addCleanup(lambda: process.poll() is None and os.kill(process.pid, signal.SIGCONT))
        with Watch(session, terminal) as watch:
            self.move(terminal, 200, 500)
            self.assertGreater(watch.during(4 * TICK)[0], 1, "it is looked after, and not just moved by us")
        session.xterm("another")
        eventually(lambda: len(session.names()) == 2, "the bar goes on")
        process.kill()
        eventually(lambda: len(session.names()) == 1, "the dead one's button goes")
        self.assertIsNone(self.program.poll())

    def test_each_monitor_has_a_target_of_its_own(self):
        session, client = self.session, Client(self.session)
        session.set_monitor("UPPER", "1920/500x500/200+0+0", "screen")
        session.set_monitor("LOWER", "1920/500x580/200+0+500", "none")
        eventually(lambda: len(session.bars()) == 2, "a bar on each monitor")
        for top, height in ((0, 500), (500, 580)):
            window = client.open(300, top + 60, 500, 300)
            session.activate(window)
            self.move(window, 300, top + height - 280)
            eventually(lambda: frame(session, window) == (0, top, 1920, height - 68), f"it fills the monitor at {top}")


if __name__ == "__main__":
    unittest.main()
