"""Measures starts side by side on a private Xvfb with a window manager: from the process to its first dock on the screen.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/starts.py [--runs N] [COMMAND...]   (another panel's, each)
"""

import argparse
import os
import shlex
import sys
import time

from Xlib import X, display, error

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from program import report  # noqa: E402
from session import PROGRAM, Session  # noqa: E402


def start_to_dock(session, command):
    """Milliseconds; the program and all that it started are ended again."""
    watcher = display.Display(session.environment["DISPLAY"])
    watcher.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
    watcher.sync()
    kind, dock = watcher.intern_atom("_NET_WM_WINDOW_TYPE"), watcher.intern_atom("_NET_WM_WINDOW_TYPE_DOCK")

    def is_dock(window):
        try:
            found = window.get_full_property(kind, X.AnyPropertyType)
            return bool(found and dock in found.value) or any(is_dock(child) for child in window.query_tree().children)
        except error.BadWindow:
            return False

    before = time.perf_counter()
    process = session.start(*command)
    # A dock that the window manager puts into a frame is seen by the frame.
    has_come = False
    while not has_come and time.perf_counter() < before + 10:
        has_come = bool(watcher.pending_events()) and (event := watcher.next_event()).type == X.MapNotify and is_dock(event.window)
    elapsed = (time.perf_counter() - before) * 1000
    os.killpg(process.pid, 15)
    process.wait()
    session.processes.remove(process)
    watcher.close()
    time.sleep(0.5)
    return elapsed if has_come else None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runs", type=int, default=11)
    parser.add_argument("commands", nargs="*")
    options = parser.parse_args()
    commands = [[PROGRAM]] + [shlex.split(command) for command in options.commands]
    with Session() as session:
        session.write_settings(manageDock=False)
        samples = {command[0]: [] for command in commands}
        for run in range(options.runs + 1):  # In turn; the first of each reads cold files.
            for command in commands:
                elapsed = start_to_dock(session, command)
                if run and elapsed:
                    samples[command[0]].append(elapsed)
        for name, times in samples.items():
            if times:
                report("start to a dock on the screen: " + os.path.basename(name), times, "ms")
            else:
                print(f"start to a dock on the screen: {name} shows none")


if __name__ == "__main__":
    main()
