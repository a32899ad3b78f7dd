"""Keys that work whatever program is in front. Keys are named by their places on the keyboard."""

import ctypes
import re
import subprocess
import unittest

from Xlib import X
from Xlib.ext import xtest

from session import Client, Session, eventually

ALT, SUPER, SHIFT, CAPS_LOCK, NUM_LOCK = 64, 133, 50, 66, 77
ONE, TWO, THREE, NINE, B, X_KEY = 10, 11, 12, 18, 56, 53
ALT_MASK = X.Mod1Mask


def down(session, *codes):
    for code in codes:
        xtest.fake_input(session.display, X.KeyPress, code)
    session.display.sync()


def up(session, *codes):
    for code in reversed(codes):
        xtest.fake_input(session.display, X.KeyRelease, code)
    session.display.sync()


def press(session, *codes):
    down(session, *codes)
    up(session, *codes)


class Keyboard:
    """The server's keyboard itself, rather than the one that XTEST stands in for, so that it can be unplugged."""

    def __init__(self, session):
        self.session = session
        self.x11, xi, self.xtst = (ctypes.CDLL(name) for name in ("libX11.so.6", "libXi.so.6", "libXtst.so.6"))
        self.x11.XOpenDisplay.restype = xi.XOpenDevice.restype = ctypes.c_void_p
        self.number = self.xinput("list", "--id-only", "Xvfb keyboard").strip()
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(session.environment["DISPLAY"].encode()))
        self.device = ctypes.c_void_p(xi.XOpenDevice(self.display, ctypes.c_ulong(int(self.number))))

    def xinput(self, *arguments):
        return subprocess.run(["xinput", *arguments], env=self.session.environment, check=True, capture_output=True,
                              text=True).stdout

    def down(self, *keys):
        for key in keys:
            self.xtst.XTestFakeDeviceKeyEvent(self.display, self.device, key, 1, None, 0, ctypes.c_ulong(0))
        self.x11.XSync(self.display, 0)

    def unplug(self):
        self.xinput("disable", self.number)


class KeyTest(unittest.TestCase):
    def toggle(self, session, what):
        shown = bool(session.bars())
        press(session, ALT, SUPER, B)
        eventually(lambda: bool(session.bars()) != shown, f"the bar is {'hidden' if shown else 'shown'}: {what}")

    def listener(self, session):
        client = Client(session)
        window = client.open(300, 200, 400, 300)
        eventually(lambda: session.active() == window.id, "the client is in front")
        return client

    def open_first(self, session):
        """Opens the program of the first button."""
        self.first = session.xterm()
        eventually(lambda: session.names() == ["XTerm"], "it has a button")

    def digit(self, session, what):
        session.minimise(self.first)

        def press_and_look():
            press(session, ALT, ONE)
            return not session.is_minimised(self.first)

        # A press that comes ahead of the news that the program is minimised finds it in front, with none to go back to.
        eventually(press_and_look, f"the first button: {what}")

    def test_they_work_with_locks_and_on_any_layout(self):
        with Session() as session:
            session.start_bar()
            self.open_first(session)
            for lock in (None, CAPS_LOCK, NUM_LOCK):
                if lock:
                    press(session, lock)
                self.toggle(session, lock)
                self.digit(session, lock)
            for layout in (["fr"], ["us,ru", "-option", "grp:shift_caps_toggle"], ["us"], ["de", "neo"]):
                subprocess.run(["setxkbmap", *layout], env=session.environment, check=True)
                press(session, SHIFT, CAPS_LOCK)
                self.toggle(session, layout)
                self.digit(session, layout)
            self.toggle(session, "an even number of times")

    def test_what_they_claim_reaches_nobody_and_the_rest_the_focused_program_once(self):
        with Session() as session:
            session.start_bar()
            client = self.listener(session)
            self.toggle(session, "away")
            press(session, ALT, NINE)
            press(session, ALT, B)
            press(session, ALT, SUPER, ONE)
            eventually(lambda: client.seen(ONE) == 1, "the keys so far are decided")
            session.write_settings(enableShortcuts=False)
            press(session, ALT, ONE)
            self.toggle(session, "back, with the others switched off")
            # Keys come in their order: when the last has come, none of those before is still on its way.
            press(session, X_KEY)
            eventually(lambda: client.seen(X_KEY) == 1, "the last key came")
            self.assertEqual([code for code in client.presses if code not in (ALT, SUPER)], [B, ONE, ONE, X_KEY])

            session.write_settings(enableShortcuts=True)
            down(session, ALT, SUPER, B)
            up(session, ALT, SUPER)
            press(session, X_KEY)
            eventually(lambda: client.seen(X_KEY) == 2, "other keys are free while one is held")
            subprocess.run(["setxkbmap", "fr"], env=session.environment, check=True)
            up(session, B)
            self.toggle(session, "after the keyboard changed under a key that was held")

            keyboard = Keyboard(session)
            keyboard.down(ALT, SUPER, B)
            eventually(lambda: not session.bars(), "the bar is hidden")
            keyboard.unplug()  # With keys down; the others are free.
            press(session, X_KEY)
            eventually(lambda: client.seen(X_KEY) == 3, "another keyboard's keys come through")
            self.toggle(session, "by the other keyboard")

    def test_a_key_that_is_another_programs_is_named_and_the_others_work(self):
        with Session() as session:
            other = Client(session)
            other.grab(THREE, ALT_MASK)
            session.start_bar()
            self.assertEqual(re.findall("vantry: another program has (.*)", session.log()), ["Alt+AE03 for itself"])
            self.open_first(session)
            self.digit(session, "though the third is taken")
            press(session, ALT, THREE)
            eventually(lambda: other.seen(THREE) == 1, "its owner has it")


if __name__ == "__main__":
    unittest.main()
