"""Measures panels side by side on a private Xvfb with a window manager, in the session of a new user, and takes a picture of
each with its task buttons: proof that it shows some.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/panels.py [--pictures FOLDER] [COMMAND...]         (another panel's, each: tint2 lxqt-panel xfce4-panel)
"""

import argparse
import os
import shlex
import statistics
import sys
import time

from PIL import ImageChops
from Xlib import X

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
import crowd  # noqa: E402
from program import Client, cpu_seconds, pss_mib, titles  # noqa: E402
from session import PROGRAM, Session, eventually  # noqa: E402
from starts import start_to_dock  # noqa: E402


class Panel:
    """One that runs, with its first dock."""

    def __init__(self, session, command):
        self.session = session
        self.process = session.start(*command)
        eventually(lambda: crowd.panel_window(session), f"{command[0]} shows a dock", 20)
        time.sleep(3)
        self.place = session.geometry(session.window(crowd.panel_window(session)))

    def end(self):
        os.killpg(self.process.pid, 15)
        self.process.wait()
        self.session.processes.remove(self.process)
        time.sleep(1)

    def picture(self):
        return self.session.picture(*self.place)

    def rest(self):
        """Waits until what it shows has been the same for a while."""
        before, since = self.picture(), time.monotonic()
        while time.monotonic() < since + 0.5:
            now = self.picture()
            if now.tobytes() != before.tobytes():
                before, since = now, time.monotonic()
            time.sleep(0.05)
        return before

    def new_window(self, client, runs=11):
        """Milliseconds from a window's being mapped to the first change of the panel, and where that was last."""
        samples, place = [], None
        for _ in range(runs):
            before = self.rest()
            window = client.open()
            client.wait_mapped()
            start = time.perf_counter()
            while self.picture().tobytes() == before.tobytes() and time.perf_counter() < start + 2:
                pass
            samples.append((time.perf_counter() - start) * 1000)
            place = ImageChops.difference(before, self.rest()).getbbox()
            window.destroy()
            client.display.flush()
        return samples, place

    def click(self, client, runs=11):
        """Milliseconds from a click on a task button to its window's being active."""
        session, samples = self.session, []
        before = self.rest()
        first = client.open(title="first")
        client.wait_mapped()
        box = ImageChops.difference(before, self.rest()).getbbox()
        second = client.open(900, 200, "second")
        client.wait_mapped()
        self.rest()
        if not box:
            return None
        point = self.place[0] + box[0] + 12, self.place[1] + (box[1] + box[3]) // 2
        for _ in range(runs):
            session.activate(session.window(second.id))
            time.sleep(0.3)
            session.move(*point)
            time.sleep(0.6)
            session.press()
            time.sleep(0.05)
            start = time.perf_counter()
            session.release()
            while session.active() != first.id and time.perf_counter() < start + 2:
                pass
            if session.active() == first.id:
                samples.append((time.perf_counter() - start) * 1000)
            session.move(900, 300)
        for window in (first, second):
            window.destroy()
        client.display.flush()
        return samples or None

    def idle(self, seconds=20):
        before, start = cpu_seconds(self.process.pid), time.monotonic()
        time.sleep(seconds)
        return (cpu_seconds(self.process.pid) - before) * 1000 / (time.monotonic() - start)


def measure(session, command, options):
    starts = [start_to_dock(session, command) for _ in range(8)][1:]
    panel = Panel(session, command)
    client = Client(session)
    samples, _ = panel.new_window(client)
    clicks = panel.click(client)
    client.display.close()
    terminals = [session.xterm(f"terminal {number}", f"80x24+{100 + 40 * number}+{60 + 30 * number}") for number in range(10)]
    session.move(900, 300)
    time.sleep(3)
    if options.pictures:
        panel.picture().save(os.path.join(options.pictures, os.path.basename(command[0]) + ".png"))
    row = {"start": median(starts), "new window": median(samples), "click": median(clicks), "idle": panel.idle(),
           "1,000 titles": titles(session, panel.process), "memory": pss_mib(panel.process.pid)}
    for terminal in terminals:
        session.ask(terminal, "_NET_CLOSE_WINDOW", 0, 2)
    eventually(lambda: not session.windows_of("XTerm"), "they are closed")
    panel.end()
    return row


def median(samples):
    return statistics.median(samples) if samples and all(sample is not None for sample in samples) else None


UNITS = {"start": "ms", "new window": "ms", "click": "ms", "idle": "ms/s", "1,000 titles": "ms", "memory": "MiB"}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pictures")
    parser.add_argument("commands", nargs="*")
    options = parser.parse_args()
    commands = [[PROGRAM]] + [shlex.split(command) for command in options.commands]
    print("| |" + "".join(f" {what}, {unit} |" for what, unit in UNITS.items()))
    for command in commands:
        with Session(has_installed_programs=True) as session:
            session.write_settings(manageDock=False)
            row = measure(session, command, options)
        figures = "".join(f" {row[what]:.2f} |" if row[what] is not None else " none |" for what in UNITS)
        print(f"| {os.path.basename(command[0])} |{figures}", flush=True)


if __name__ == "__main__":
    main()
