"""Measures the settings window on a private Xvfb with a window manager: opening, a switch to the bar, memory.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/settings.py [--runs N]
"""

import argparse
import os
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from program import pss_mib, report  # noqa: E402
from session import Session, eventually  # noqa: E402

# Of the window in the middle of the screen: in the sidebar, below its entries.
SIDEBAR = (600, 760)


def until_it_differs(look, act):
    """Milliseconds from an act of the user to a picture that isn't the one before."""
    before = look()
    started = time.perf_counter()
    act()
    while look() == before:
        pass
    return (time.perf_counter() - started) * 1000


def open_window(session):
    x, y, width, height = session.geometry(session.bars()[0])
    session.click((x + width - 300, y + height // 2), 3)
    eventually(lambda: session.popups("POPUP_MENU"), "the menu opens")
    time.sleep(0.3)
    session.key("Up", "Up")
    time.sleep(0.1)
    return until_it_differs(lambda: session.picture(*SIDEBAR, 1, 1).tobytes(), lambda: session.key("Return"))


def close_window(session):
    session.ask(session.titled("Vantry Settings"), "_NET_CLOSE_WINDOW", 0, 2)
    eventually(lambda: not session.titled("Vantry Settings"), "it is closed")
    time.sleep(0.3)


def switch(session, launcher):
    """The launcher's switch on the page of the buttons, to the bar without or with it."""
    x, y = launcher
    seen = lambda: session.picture(int(x) - 10, int(y) - 10, 20, 20).tobytes()
    elapsed = until_it_differs(seen, lambda: session.key("space"))
    time.sleep(0.3)
    return elapsed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runs", type=int, default=7)
    runs = parser.parse_args().runs
    first, next_time, switches, memory = [], [], [], []
    for _ in range(runs):
        with Session() as session:
            process = session.start_bar(env={"BAR_DEBUG": "0", "BAR_TIMING": "0"}, wait=False)
            eventually(session.is_bar_painted, "the bar is painted")
            time.sleep(1)
            before = pss_mib(process.pid)
            first.append(open_window(session))
            time.sleep(0.5)
            close_window(session)
            next_time.append(open_window(session))
            time.sleep(0.5)
            launcher = session.bar().middle("launcher")
            session.key("Down", "Tab")
            time.sleep(0.3)
            switches.extend(switch(session, launcher) for _ in range(4))
            memory.append(pss_mib(process.pid) - before)
    report("first opening to painted", first, "ms", "  asked: 120")
    report("next opening to painted", next_time, "ms", "  asked: 30")
    report("a switch to the bar painted", switches, "ms", "  asked: 16")
    report("memory more than before the first opening (PSS)", memory, "MiB", "  asked: 12")


if __name__ == "__main__":
    main()
