"""Measures the whole program on a private Xvfb with a window manager: start, memory, latencies, CPU.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/program.py [--beside PROGRAM] [--runs N]
"""

import argparse
import os
import statistics
import sys
import time

from Xlib import X, Xatom, display
from Xlib.ext import xtest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from session import PROGRAM, Session, eventually  # noqa: E402


def cpu_seconds(*pids):
    """Of all their threads, from the scheduler's own account (nanoseconds)."""
    total = 0
    for pid in pids:
        for task in os.listdir(f"/proc/{pid}/task"):
            with open(f"/proc/{pid}/task/{task}/schedstat", encoding="ascii") as file:
                total += int(file.read().split()[0])
    return total / 1e9


def pss_mib(*pids):
    total = 0
    for pid in pids:
        with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
            total += next(int(line.split()[1]) for line in file if line.startswith("Pss:"))
    return total / 1024


# What any program may have the session bus start.
SERVICES = ("dconf-service", "xfconfd", "at-spi", "gvfsd")


def started_by_the_bus(session):
    """The bus leaves those that it starts to the first process."""
    display_of_all = f"DISPLAY={session.environment['DISPLAY']}".encode()
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/environ", "rb") as environ, open(f"/proc/{pid}/stat", encoding="utf-8") as stat:
                name, _, rest = stat.read().partition("(")[2].rpartition(")")
                if rest.split()[1] == "1" and display_of_all in environ.read().split(b"\0"):
                    found += [] if name.startswith(SERVICES) else [int(pid)]
        except OSError:  # It has ended, or is another user's.
            continue
    return found


def processes_of(session, process):
    """The process and all that it started, by itself or by the session bus."""
    found = [process.pid, *started_by_the_bus(session)]
    for pid in found:
        with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
            found += [int(child) for child in file.read().split()]
    return found


def report(what, samples, unit, bound=""):
    print(f"{what:55} median {statistics.median(samples):8.2f} {unit:6} min {min(samples):8.2f} "
          f"max {max(samples):8.2f}  ({len(samples)} runs){bound}", flush=True)


def start_to_mapped(session, program, is_it):
    """Milliseconds from starting the process to its window's MapNotify."""
    watcher = display.Display(session.environment["DISPLAY"])
    watcher.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
    watcher.sync()
    before = time.perf_counter()
    process = session.start(program)
    while True:
        event = watcher.next_event()
        if event.type == X.MapNotify and is_it(event.window):
            break
    elapsed = (time.perf_counter() - before) * 1000
    process.terminate()
    process.wait()
    watcher.close()
    return elapsed


def is_dock_sized(window):
    try:
        geometry = window.get_geometry()
        return (geometry.width, geometry.height) == (1920, 63)
    except Exception:  # the window has gone meanwhile
        return False


class Client:
    """A program of our own with windows, on a connection of its own."""

    def __init__(self, session, name="Bench"):
        self.display = display.Display(session.environment["DISPLAY"])
        self.root = self.display.screen().root
        self.name = name

    def open(self, x=300, y=200, title="Bench"):
        window = self.root.create_window(x, y, 400, 300, 0, self.display.screen().root_depth, X.InputOutput,
                                         X.CopyFromParent, background_pixel=0x335577, event_mask=X.StructureNotifyMask)
        window.set_wm_class(self.name.lower(), self.name)
        window.set_wm_name(title)
        window.map()
        self.display.flush()
        return window

    def wait_mapped(self):
        while self.display.next_event().type != X.MapNotify:
            pass


def map_to_painted(session, runs):
    bar = session.bar()
    client = Client(session)
    cell = lambda: session.picture(bar.button(0)[0] - 10, bar.y + 12, 20, 40).tobytes()
    session.move(900, 300)
    empty = cell()
    samples = []
    for _ in range(runs):
        window = client.open()
        client.wait_mapped()
        before = time.perf_counter()
        while cell() == empty:
            pass
        samples.append((time.perf_counter() - before) * 1000)
        window.destroy()
        client.display.flush()
        eventually(lambda: cell() == empty, "the button goes with its window")
        time.sleep(0.05)
    client.display.close()
    return samples


def click_to_active(session, runs):
    bar = session.bar()
    first = session.xterm("one", "80x24+100+100")
    second = session.xterm("two", "80x24+700+100")
    eventually(lambda: len(session.names()) == 2, "both have a button")
    watcher = display.Display(session.environment["DISPLAY"])
    root, active = watcher.screen().root, watcher.intern_atom("_NET_ACTIVE_WINDOW")
    root.change_attributes(event_mask=X.PropertyChangeMask)
    watcher.sync()
    samples = {"by a click": [], "beside: by a pager's request": []}
    for run in range(2 * runs):
        target, index = ((first, 0), (second, 1))[run % 2]
        way = list(samples)[run // 2 % 2]
        session.move(*bar.button(index))
        time.sleep(0.2)
        while watcher.pending_events():
            watcher.next_event()
        if way == "by a click":
            # The release is the click; a person holds the button for a while.
            session.press()
            time.sleep(0.05)
        before = time.perf_counter()
        if way == "by a click":
            session.release()
        else:
            session.ask(target, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime, 0)
        while root.get_full_property(active, X.AnyPropertyType).value[0] != target.id:
            while watcher.next_event().atom != active:
                pass
        samples[way].append((time.perf_counter() - before) * 1000)
    watcher.close()
    return samples


def key_to_action(session, process, runs):
    """From pressing Option and 1 to the line that the action begins with in the log."""
    alt, one = 64, 10
    samples = []
    with open(process.log_file, "rb") as log:
        for _ in range(runs):
            log.seek(0, os.SEEK_END)
            xtest.fake_input(session.display, X.KeyPress, alt)
            session.display.sync()
            text, before = b"", time.perf_counter()
            xtest.fake_input(session.display, X.KeyPress, one)
            session.display.flush()
            while b"shortcut: option-1" not in text:
                time.sleep(0.0001)  # Looking on without a pause would keep a processor from those that are measured.
                text += log.read()
            samples.append((time.perf_counter() - before) * 1000)
            for code in (one, alt):
                xtest.fake_input(session.display, X.KeyRelease, code)
            session.display.sync()
            time.sleep(0.3)
    return samples


def over_the_bar_to_clear(session, runs):
    """From a window's opening over the bar to its foot being above it, in ticks of half a second."""
    client = Client(session)
    samples = []
    for _ in range(runs):
        window = client.open(300, 900)
        client.wait_mapped()
        session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0x300 | 2 << 12, 300, 900)
        before = time.perf_counter()
        shown = session.window(window.id)
        eventually(lambda: session.geometry(shown)[1] + session.geometry(shown)[3] <= 1012, "it is clear of the bar", 5)
        samples.append((time.perf_counter() - before) / 0.5)
        window.destroy()
        client.display.flush()
        time.sleep(0.13)
    client.display.close()
    return samples


def titles(session, cpu):
    """Milliseconds by which what `cpu` gives has grown after a thousand titles."""
    client = Client(session)
    window = client.open()
    client.wait_mapped()
    time.sleep(2)
    name, utf8 = client.display.intern_atom("_NET_WM_NAME"), client.display.intern_atom("UTF8_STRING")
    before = cpu()
    for number in range(1000):
        window.change_property(name, utf8, 8, f"Title number {number}".encode())
        client.display.flush()
        time.sleep(0.001)
    time.sleep(1)
    used = (cpu() - before) * 1000
    client.display.close()
    return used


def menu_to_painted(session, runs):
    """The launcher's menu of 500 applications: from the release of the button to a picture of its first entries."""
    folder = os.path.join(session.environment["XDG_DATA_HOME"], "applications")
    os.makedirs(folder, exist_ok=True)
    for number in range(500):
        with open(os.path.join(folder, f"bench{number}.desktop"), "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Bench {number}\nExec=true {number}\nIcon=l3afpad\n")
    first, later = [], []
    for _ in range(runs):
        process = session.start_bar(env={"BAR_DEBUG": "0", "BAR_TIMING": "0"}, wait=False)
        eventually(session.bars, "the bar is there")
        bar = session.bar()
        time.sleep(1)
        text = lambda: session.picture(bar.x + 50, bar.y - 200, 60, 100).tobytes()
        session.move(*bar.middle("launcher"))
        time.sleep(0.2)
        empty = text()
        for samples in (first, later):
            session.press(3)
            time.sleep(0.05)
            before = time.perf_counter()
            session.release(3)
            while text() == empty:
                pass
            samples.append((time.perf_counter() - before) * 1000)
            time.sleep(0.2)
            session.click((1500, 200))
            session.move(*bar.middle("launcher"))
            eventually(lambda: text() == empty, "the menu is closed")
            time.sleep(0.2)
        process.terminate()
        process.wait()
    return first, later


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--beside", help="another program whose start and memory stand beside")
    parser.add_argument("--runs", type=int, default=15)
    parser.add_argument("--idle", type=float, default=30, help="seconds of the idle measurement")
    options = parser.parse_args()

    with Session() as session:
        session.write_settings(showFinderButton=False)
        quiet = {"BAR_DEBUG": "0", "BAR_TIMING": "0"}
        for program in filter(None, (PROGRAM, options.beside)):
            for what, is_managed in (("", False), (", the Dock behind it", True))[:1 + (program == PROGRAM)]:
                session.write_settings(showFinderButton=False, manageDock=is_managed)
                start_to_mapped(session, program, is_dock_sized)
                samples = [start_to_mapped(session, program, is_dock_sized) for _ in range(options.runs)]
                report(f"start to mapped: {os.path.basename(program)}{what}", samples, "ms")

        if options.beside:
            process = session.start(options.beside)
            time.sleep(2)
            report(f"memory: {os.path.basename(options.beside)}", [pss_mib(process.pid)], "MiB")
            process.terminate()
            process.wait()

        process = session.start_bar(env=quiet, wait=False)
        eventually(session.bars, "the bar is there")
        time.sleep(1)
        report("new window mapped to its button painted", map_to_painted(session, options.runs), "ms")
        process.terminate()
        process.wait()

        for time_of, samples in zip(("first time, cold catalogue", "next time"), menu_to_painted(session, options.runs // 3)):
            report("menu of 500 applications painted: " + time_of, samples, "ms")

        process = session.start_bar()
        for way, samples in click_to_active(session, 2 * options.runs).items():
            report("window active " + way, samples, "ms")
        report("key pressed to action started", key_to_action(session, process, options.runs), "ms")
        report("window over the bar to clear of it", over_the_bar_to_clear(session, options.runs), "ticks")
        process.terminate()
        process.wait()

        process = session.start_bar(env=quiet, wait=False)
        eventually(session.bars, "the bar is there")
        for number in range(8):
            session.xterm(f"terminal {number}", f"80x24+{100 + 40 * number}+{100 + 30 * number}")
        session.move(900, 300)
        time.sleep(3)
        before, start = cpu_seconds(process.pid), time.monotonic()
        time.sleep(options.idle)
        used = (cpu_seconds(process.pid) - before) * 1000 / (time.monotonic() - start)
        report("CPU a second when idle with 10 windows", [used], "ms/s")
        report("CPU of 1000 title changes", [titles(session, lambda: cpu_seconds(process.pid)) for _ in range(3)], "ms")
        for number in range(8, 18):
            session.xterm(f"terminal {number}", f"80x24+{100 + 40 * number}+{100 + 30 * number}")
        time.sleep(3)
        report("memory with 20 windows", [pss_mib(process.pid)], "MiB")


if __name__ == "__main__":
    main()
