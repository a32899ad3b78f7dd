"""Measures what many windows cost a panel, on a private Xvfb with a window manager: the CPU of its process while they
appear, while the focus changes, while nothing happens and while they close, and its longest stalls.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/crowd.py [--program "COMMAND"] [--windows 100,500,2000] [--programs 20]

A stall is how long the panel takes to answer `_NET_WM_PING`, which is asked of it all the while in a run of its own;
with it what its main thread worked meanwhile, which other programs on the machine make no longer. Beside it stands a
window that does nothing but answer: what both wait for is the server and the machine."""

import argparse
import multiprocessing
import os
import random
import shlex
import sys
import time

from Xlib import X, display, error
from Xlib.protocol import event

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from program import cpu_seconds, processes_of  # noqa: E402
from session import PROGRAM, WINDOW_MANAGER, Session, eventually  # noqa: E402

FOCUS_CHANGES = 50
# Nothing may change for so long before something counts as over, in seconds.
QUIET = 1.5


def make_windows(name, program, pipe):
    """A program: opens a window for each name that it is given, closes the one that it opened first for none, and gives the
    window's number once the server has done so."""
    server = display.Display(name)
    screen, windows = server.screen(), []
    title, utf8 = server.intern_atom("_NET_WM_NAME"), server.intern_atom("UTF8_STRING")
    while True:
        try:
            text = pipe.recv()
        except EOFError:
            return
        if text is None:
            window = windows.pop(0)
            window.destroy()
        else:
            window = screen.root.create_window(random.randrange(1400), random.randrange(600), 400, 300, 0, X.CopyFromParent,
                                               background_pixel=screen.white_pixel)
            window.set_wm_class(program, program)
            window.change_property(title, utf8, 8, text.encode())
            window.map()
            windows.append(window)
        server.sync()
        pipe.send(window.id)


class Crowd:
    """Programs with windows."""

    def __init__(self, session, programs, name="crowd"):
        context = multiprocessing.get_context("fork")
        self.programs, self.windows, self.pipes = [], [], []
        for number in range(programs):
            mine, theirs = context.Pipe()
            self.pipes.append(mine)
            self.programs.append(context.Process(target=make_windows, daemon=True,
                                                 args=(session.environment["DISPLAY"], f"{name}{number}", theirs)))
            self.programs[-1].start()

    def each(self, count, text):
        """So many of the programs do it at once; what they answer."""
        for pipe in self.pipes[:count]:
            pipe.send(text)
        return [pipe.recv() for pipe in self.pipes[:count]]

    def open(self, count):
        for turn, first in enumerate(range(0, count, len(self.programs))):
            self.windows += self.each(count - first, f"Window {turn}")

    def close(self):
        for first in range(0, len(self.windows), len(self.programs)):
            self.each(len(self.windows) - first, None)
        self.windows = []

    def end(self):
        for program in self.programs:
            program.terminate()
            program.join()


def answer_pings(name, ready):
    """The window beside the panel's."""
    server = display.Display(name)
    root, protocols = server.screen().root, server.intern_atom("WM_PROTOCOLS")
    window = root.create_window(0, 0, 1, 1, 0, X.CopyFromParent, override_redirect=True)
    server.sync()
    ready.send(window.id)
    while True:
        note = server.next_event()
        if note.type == X.ClientMessage and note.client_type == protocols:
            answer = event.ClientMessage(window=root, client_type=protocols, data=note.data)
            root.send_event(answer, event_mask=X.SubstructureNotifyMask | X.SubstructureRedirectMask)
            server.flush()


def main_thread_seconds(pid):
    with open(f"/proc/{pid}/task/{pid}/schedstat", encoding="ascii") as file:
        return int(file.read().split()[0]) / 1e9


def ask_pings(name, pid, windows, pipe):
    """Pings each window anew as soon as it has answered, and gives how long the answers took at most, on demand."""
    server = display.Display(name)
    root, protocols, ping = server.screen().root, server.intern_atom("WM_PROTOCOLS"), server.intern_atom("_NET_WM_PING")
    # Toolkits differ in which of the root's listeners they answer to; what else those hear is passed over.
    root.change_attributes(event_mask=X.SubstructureNotifyMask | X.StructureNotifyMask)
    asked, longest = {}, dict.fromkeys(windows, (0.0, 0.0))

    def since(number):
        return tuple(max(most, now - then)
                     for most, now, then in zip(longest[number], (time.perf_counter(), main_thread_seconds(pid)), asked[number]))

    def ask(number):
        asked[number] = time.perf_counter(), main_thread_seconds(pid)
        note = event.ClientMessage(window=server.create_resource_object("window", number), client_type=protocols,
                                   data=(32, [ping, X.CurrentTime, number, 0, 0]))
        server.create_resource_object("window", number).send_event(note)

    while True:
        for number in windows:
            if number not in asked:
                ask(number)
        server.flush()
        time.sleep(0.002)
        while server.pending_events():
            note = server.next_event()
            if note.type == X.ClientMessage and note.client_type == protocols and note.data[1][2] in asked:
                number = note.data[1][2]
                longest[number] = since(number)
                del asked[number]
        if pipe.poll():
            pipe.recv()
            panel, beside = (since(number) if number in asked else longest[number] for number in windows)
            pipe.send((panel[0] * 1000, panel[1] * 1000, beside[0] * 1000))
            longest = dict.fromkeys(windows, (0.0, 0.0))


class Stalls:
    def __init__(self, session, pid, panel):
        name, context = session.environment["DISPLAY"], multiprocessing.get_context("fork")
        answers, theirs = context.Pipe()
        self.beside = context.Process(target=answer_pings, args=(name, theirs), daemon=True)
        self.beside.start()
        self.pipe, theirs = context.Pipe()
        self.asker = context.Process(target=ask_pings, args=(name, pid, [panel, answers.recv()], theirs), daemon=True)
        self.asker.start()

    def take(self):
        """The longest of the panel, what it worked in one at most, and the longest of the window beside it, since it
        was last asked; in milliseconds."""
        self.pipe.send(None)
        return self.pipe.recv()

    def end(self):
        self.asker.terminate()
        self.beside.terminate()


def docks(session):
    found = []
    for window in session.clients():
        try:
            if "_NET_WM_WINDOW_TYPE_DOCK" in session.atoms(window, "_NET_WM_WINDOW_TYPE"):
                found.append(window)
        except error.XError:
            continue
    return found


def wait(condition, what, timeout):
    """As `eventually`, at a pace that leaves the server its time."""
    end = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"not within {timeout} s: {what}")
        time.sleep(0.1)


def cpu_of(session, process):
    return cpu_seconds(*processes_of(session, process))


def settle(session, process, count, timeout):
    """Waits until the window manager lists so many windows and the process has come to rest."""
    wait(lambda: len(session.property(session.root, "_NET_CLIENT_LIST") or []) == count,
         f"the window manager has {count} windows", timeout)
    before, end = cpu_of(session, process), time.monotonic() + timeout
    while time.monotonic() < end:
        time.sleep(QUIET)
        now = cpu_of(session, process)
        if now - before < 0.01 * QUIET:
            return
        before = now


def change_focus(session, windows):
    for number in random.sample(windows, FOCUS_CHANGES):
        session.ask(session.window(number), "_NET_ACTIVE_WINDOW", 2, X.CurrentTime, 0)
        wait(lambda: session.active() == number, "the window is active", 120)


def measure(command, count, programs, idle, settings, open_session=Session):
    """CPU of each phase in milliseconds, and its duration in seconds; of doing nothing, milliseconds a second."""
    def phases(session, process, crowd, listed):
        timeout = 60 + count / 10

        def phase(act, after):
            before, start = cpu_of(session, process), time.monotonic()
            act()
            settle(session, process, after, timeout)
            return (cpu_of(session, process) - before) * 1000, time.monotonic() - start - QUIET

        yield "appear", *phase(lambda: crowd.open(count), listed + count)
        windows = crowd.windows
        yield "focus", *phase(lambda: change_focus(session, windows), listed + count)
        before, start = cpu_of(session, process), time.monotonic()
        time.sleep(idle)
        yield "idle", (cpu_of(session, process) - before) * 1000 / (time.monotonic() - start), idle
        yield "close", *phase(crowd.close, listed)

    yield from with_crowd(command, count, programs, settings, phases, open_session)


def measure_stalls(command, count, programs, settings):
    """While windows come and while they go: the longest stall, the most work in one, the longest of the window beside."""
    def phases(session, process, crowd, listed):
        stalls = Stalls(session, process.pid, docks(session)[0].id)
        try:
            for name, act, after in (("appear", lambda: crowd.open(count), listed + count), ("close", crowd.close, listed)):
                time.sleep(1)
                stalls.take()
                act()
                wait(lambda: len(session.property(session.root, "_NET_CLIENT_LIST") or []) == after, name, 60 + count / 10)
                yield name, *stalls.take()
        finally:
            stalls.end()

    yield from with_crowd(command, count, programs, settings, phases)


def with_crowd(command, count, programs, settings, phases, open_session=Session):
    random.seed(count)
    with open_session() as session:
        session.write_settings(**settings)
        process = session.start(*shlex.split(command), env={"BAR_DEBUG": "0", "BAR_TIMING": "0"},
                                log=os.environ.get("CROWD_LOG"))
        eventually(lambda: docks(session), "the panel is there", 20)
        time.sleep(3)
        listed = len(session.property(session.root, "_NET_CLIENT_LIST"))
        crowd = Crowd(session, programs)
        yield from phases(session, process, crowd, listed)
        crowd.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=PROGRAM, help="the panel's command line")
    parser.add_argument("--windows", default="100,500,2000")
    parser.add_argument("--programs", type=int, default=20)
    parser.add_argument("--idle", type=float, default=20, help="seconds of the idle measurement")
    parser.add_argument("--grouping", help="a setting of ours: always, automatic, never")
    parser.add_argument("--only", choices=("cpu", "stalls"))
    options = parser.parse_args()

    settings = {"grouping": options.grouping} if options.grouping else {}
    print(f"{options.program} on {WINDOW_MANAGER}, {options.programs} programs")
    for count in map(int, options.windows.split(",")):
        if options.only != "stalls":
            for what, cpu, took in measure(options.program, count, options.programs, options.idle, settings):
                unit = "ms a second" if what == "idle" else "ms of CPU"
                print(f"{count:6} windows {what:8} {cpu:9.2f} {unit:12} in {took:6.1f} s", flush=True)
        if options.only != "cpu":
            for what, longest, work, beside in measure_stalls(options.program, count, options.programs, settings):
                print(f"{count:6} windows {what:8} longest stall {longest:6.1f} ms, at most {work:6.1f} ms of work in one, "
                      f"{beside:6.1f} ms beside", flush=True)


if __name__ == "__main__":
    main()
