"""Measures panels side by side on a private Xvfb with a window manager, in the session of a new user who has all that is
installed, and takes a picture of each with its task buttons: proof that it shows some.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/panels.py [--pictures FOLDER] [--crowd] [COMMAND...]
           (another panel's, each: tint2 lxqt-panel xfce4-panel mate-panel)

With a crowd, 2,000 windows of 20 programs are opened for each, which takes minutes.
"""

import argparse
import contextlib
import os
import shlex
import statistics
import sys
import time

from PIL import ImageChops

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
import crowd  # noqa: E402
from program import Client, processes_of, pss_mib, titles  # noqa: E402
from session import PROGRAM, Session, eventually  # noqa: E402
from starts import start_to_dock  # noqa: E402


class Panel:
    """One that runs, with its first dock."""

    def __init__(self, session, command):
        self.session = session
        self.process = session.start(*command)
        eventually(lambda: crowd.docks(session), f"{command[0]} shows a dock", 20)
        time.sleep(3)
        self.place = self._place_of_buttons()

    def _place_of_buttons(self):
        """Of the dock that changes most when a window is opened; some have more than one."""
        places = [place for place in map(self.session.geometry, crowd.docks(self.session)) if is_on_screen(*place)]
        before = [self.session.picture(*place) for place in places]
        client = Client(self.session)
        client.open()
        time.sleep(1.5)
        changes = [difference(one, self.session.picture(*place)) for one, place in zip(before, places)]
        client.display.close()
        return max(zip(changes, places), key=lambda change: area(change[0]))[1]

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
        """Milliseconds from a window's being mapped to the first change of the panel."""
        samples = []
        for _ in range(runs):
            before = self.rest()
            window = client.open()
            client.wait_mapped()
            start = time.perf_counter()
            while self.picture().tobytes() == before.tobytes() and time.perf_counter() < start + 2:
                pass
            samples.append((time.perf_counter() - start) * 1000)
            self.rest()
            window.destroy()
            client.display.flush()
        return samples

    def click(self, runs=11):
        """Milliseconds from a click on a task button to its window's being active, and another program's no more."""
        session, samples = self.session, []
        one, other = crowd.Crowd(session, 1, "one"), crowd.Crowd(session, 1, "other")
        before = self.rest()
        first = one.each(1, "one")[0]
        time.sleep(0.5)
        box = difference(before, self.rest())
        second = other.each(1, "other")[0]
        time.sleep(0.5)
        self.rest()
        if not box:
            return None
        point = self.place[0] + box[0] + 12, self.place[1] + (box[1] + box[3]) // 2
        for _ in range(runs):
            session.activate(session.window(second))
            time.sleep(0.3)
            session.move(*point)
            time.sleep(0.6)
            session.press()
            time.sleep(0.05)
            start = time.perf_counter()
            session.release()
            while session.active() != first and time.perf_counter() < start + 2:
                pass
            if session.active() == first:
                samples.append((time.perf_counter() - start) * 1000)
            session.move(900, 300)
        one.end()
        other.end()
        return samples or None

    def idle(self, seconds=20):
        before, start = self.cpu(), time.monotonic()
        time.sleep(seconds)
        return (self.cpu() - before) * 1000 / (time.monotonic() - start)

    def cpu(self):
        return crowd.cpu_of(self.session, self.process)


@contextlib.contextmanager
def new_user():
    with Session(has_installed_programs=True) as session:
        session.environment |= {"XDG_DATA_DIRS": "/usr/local/share:/usr/share", "XDG_CONFIG_DIRS": "/etc/xdg:/usr/share"}
        yield session


def difference(before, after):
    return ImageChops.difference(before, after).getbbox()


def is_on_screen(x, y, width, height):
    return x >= 0 and y >= 0 and x + width <= 1920 and y + height <= 1080


def area(box):
    return (box[2] - box[0]) * (box[3] - box[1]) if box else 0


def measure(session, command, options):
    starts = [start_to_dock(session, command) for _ in range(8)][1:]
    panel = Panel(session, command)
    client = Client(session)
    samples = panel.new_window(client)
    client.display.close()
    clicks = panel.click()
    terminals = [session.xterm(f"terminal {number}", f"80x24+{100 + 40 * number}+{60 + 30 * number}") for number in range(10)]
    session.move(900, 300)
    time.sleep(3)
    if options.pictures:
        panel.picture().save(os.path.join(options.pictures, os.path.basename(command[0]) + ".png"))
    row = {"start": median(starts), "new window": median(samples), "click": median(clicks), "idle": panel.idle(),
           "1,000 titles": titles(session, panel.cpu), "memory": pss_mib(*processes_of(session, panel.process))}
    for terminal in terminals:
        session.ask(terminal, "_NET_CLOSE_WINDOW", 0, 2)
    eventually(lambda: not session.windows_of("XTerm"), "they are closed")
    panel.end()
    return row


def median(samples):
    return statistics.median(samples) if samples and all(sample is not None for sample in samples) else None


UNITS = {"start": "ms", "new window": "ms", "click": "ms", "idle": "ms/s", "1,000 titles": "ms", "memory": "MiB",
         "2,000 windows": "ms", "they go": "ms"}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pictures")
    parser.add_argument("--crowd", action="store_true")
    parser.add_argument("commands", nargs="*")
    options = parser.parse_args()
    commands = [[PROGRAM]] + [shlex.split(command) for command in options.commands]
    rows = {}
    for command in commands:
        with new_user() as session:
            session.write_settings(manageDock=False)
            rows[command[0]] = measure(session, command, options)
            print(command[0], rows[command[0]], flush=True)
    for command in commands if options.crowd else []:
        cost = {phase: cpu for phase, cpu, _ in crowd.measure(shlex.join(command), 2000, 20, 20, {"manageDock": False}, new_user)}
        rows[command[0]] |= {"2,000 windows": cost["appear"], "they go": cost["close"]}
        print(command[0], cost, flush=True)
    print("| |" + "".join(f" {what}, {unit} |" for what, unit in UNITS.items()))
    for name, row in rows.items():
        figures = "".join(f" {row[what]:.2f} |" if row.get(what) is not None else " none |" for what in UNITS)
        print(f"| {os.path.basename(name)} |{figures}")


if __name__ == "__main__":
    main()
