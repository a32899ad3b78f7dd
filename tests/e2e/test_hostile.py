"""Programs that do what none should: the bar stays usable, and is not worn out by them."""

import array
import os
import threading
import time
import unittest

from parts import Menus, Program
from session import Session, eventually
from Xlib import X, Xatom, display

FLOOD = 3.0  # seconds


def resident(process):
    """Mebibytes."""
    with open(f"/proc/{process.pid}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE") / 2**20


def processor_time(process):
    """Seconds."""
    with open(f"/proc/{process.pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class HostileTest(Menus, unittest.TestCase):
    def setUp(self):
        self.session = self.enterContext(Session())
        self.session.write_settings(showFinderButton=False)
        self.bar = self.session.start_bar(env={"BAR_DEBUG": "0", "BAR_TIMING": "0"})
        self.terminal = self.session.xterm()
        self.editor = self.session.open("L3afpad", "l3afpad")
        eventually(lambda: self.session.names() == ["XTerm", "L3afpad"], "both have a button")
        self.program = Program(self.session)

    def flood(self, a_second, act):
        """Has it done so often a second while the bar is used; gives how often it was done. More than window managers can
        follow would try those."""
        server = display.Display(self.session.environment["DISPLAY"])
        window = server.create_resource_object("window", self.window.id)
        begins = time.monotonic()
        count, ends = 0, begins + FLOOD

        def run():
            nonlocal count
            while time.monotonic() < ends:
                for _ in range(a_second // 100):
                    act(server, window, count)
                    count += 1
                server.sync()
                time.sleep(max(0, begins + count / a_second - time.monotonic()))

        thread = threading.Thread(target=run)
        thread.start()
        try:
            while time.monotonic() < ends:
                self.is_usable()
        finally:
            thread.join()
            server.close()
        return count

    def is_usable(self):
        session = self.session
        for wanted, name in ((self.terminal, "XTerm"), (self.editor, "L3afpad")):
            session.click(self.button(name))
            eventually(lambda wanted=wanted: session.active() == wanted.id, f"a click on {name} brings it forward", 3)

    def button(self, name):
        """Theirs come first, whatever others there are."""
        return self.session.bar().button(["XTerm", "L3afpad"].index(name))

    def tearDown(self):
        self.is_usable()
        self.assertIsNone(self.bar.poll())
        said = [line for line in self.session.log().splitlines() if line]
        self.assertEqual(len(said), len(set(said)), "nothing is said twice: " + "\n".join(said[:20]))
        before = processor_time(self.bar)
        time.sleep(2)
        self.assertLess(processor_time(self.bar) - before, 0.2, "it comes to rest")

    def test_a_hail_of_titles(self):
        self.window = self.program.open("one", 0x800000, 100, 100)
        before = resident(self.bar)
        count = self.flood(10_000, lambda server, window, number: window.set_wm_name(f"title {number} " + "x" * (number % 3000)))
        self.assertGreater(count, 20_000)
        self.assertLess(resident(self.bar) - before, 30)

    def test_types_and_states_that_change_in_a_loop(self):
        self.window = self.program.open("one", 0x800000, 100, 100)
        kinds = ["NORMAL", "DOCK", "DESKTOP", "DIALOG", "SPLASH", "NOTIFICATION", "TOOLTIP"]
        before = resident(self.bar)

        def change(server, window, number):
            kind = server.intern_atom("_NET_WM_WINDOW_TYPE_" + kinds[number % len(kinds)])
            window.change_property(server.intern_atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32, [kind])
            window.change_property(server.intern_atom("_NET_WM_PID"), Xatom.CARDINAL, 32, [number])
            window.set_wm_class(f"class{number}", f"Class{number}")

        self.assertGreater(self.flood(1000, change), 2000)
        self.assertLess(resident(self.bar) - before, 30)

    def test_an_icon_larger_than_any_screen(self):
        self.window = self.program.open("one", 0x800000, 100, 100)
        self.window.unmap()
        icon = self.program.display.intern_atom("_NET_WM_ICON")
        self.window.change_property(icon, Xatom.CARDINAL, 32, [30000, 30000])
        part = array.array("I", [0xFF00FF00]) * 60_000
        for _ in range(280):  # 64 MiB: window managers that fetch all of it are slow enough with that
            self.window.change_property(icon, Xatom.CARDINAL, 32, part, mode=X.PropModeAppend)
        self.program.display.sync()
        before = resident(self.bar)
        self.window.map()
        self.program.display.sync()
        eventually(lambda: self.session.windows_of("Painter"), "it has a button")
        self.is_usable()
        time.sleep(1)
        self.assertLess(resident(self.bar) - before, 30, "no more than a part of it is fetched")

    def test_a_window_that_claims_the_whole_screen_for_itself(self):
        session = self.session
        place = session.geometry(session.bars()[0])
        self.window = self.program.create("one", 0x800000, 0, 0, 10, 10)
        atom = self.program.display.intern_atom
        self.window.change_property(atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32, [atom("_NET_WM_WINDOW_TYPE_DOCK")])
        self.window.unmap()
        self.window.map()
        for strut in ([0, 0, 0, 1080, 0, 0, 0, 0, 0, 0, 0, 1919], [2**32 - 1] * 12, [1920, 1920, 1080, 1080] + [0] * 8):
            self.window.change_property(atom("_NET_WM_STRUT_PARTIAL"), Xatom.CARDINAL, 32, strut)
            self.window.change_property(atom("_NET_WM_STRUT"), Xatom.CARDINAL, 32, strut[:4])
            self.program.display.sync()
            time.sleep(1)
            self.assertEqual(session.geometry(session.bars()[0]), place)
            self.is_usable()
            for window in (self.terminal, self.editor):
                _, _, width, height = session.geometry(window)
                self.assertTrue(width > 100 and height > 100, "nobody's window is squeezed to nothing")

    def test_one_that_lies_about_its_process(self):
        session = self.session
        self.window = self.program.create("liar", 0x800000, 100, 100)
        pid = self.program.display.intern_atom("_NET_WM_PID")
        for claimed in (self.bar.pid, 1, session.processes[0].pid):
            self.window.change_property(pid, Xatom.CARDINAL, 32, [claimed])
            self.program.display.sync()
            eventually(lambda: session.names() == ["XTerm", "L3afpad", "Painter"], "it has its own button")
            self.is_usable()


if __name__ == "__main__":
    unittest.main()
