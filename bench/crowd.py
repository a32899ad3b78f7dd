"""Measures what many windows cost a panel, on a private Xvfb with a window manager: the CPU of its process while they
appear, while the focus changes, while nothing happens and while they close, and its longest stalls.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/crowd.py --client build/release/tests/window_client
           [--program "COMMAND"] [--windows 100,500,2000] [--programs 20]

A stall is how long the panel takes to answer `_NET_WM_PING`, which is asked of it all the while in a run of its own;
with it what its main thread worked meanwhile, which other programs on the machine make no longer. Beside it stands a
window that does nothing but answer: what both wait for is the server and the machine."""

import argparse
import multiprocessing
import os
import random
import shlex
import subprocess
import sys
import time

from Xlib import X, display, error
from Xlib.protocol import event

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from program import cpu_seconds  # noqa: E402
from session import PROGRAM, WINDOW_MANAGER, Session, eventually  # noqa: E402

FOCUS_CHANGES = 50
# Nothing may change for so long before something counts as over, in seconds.
QUIET = 1.5


class Crowd:
    """Programs with windows."""

    def __init__(self, session, client, programs):
        self.programs = [subprocess.Popen([client, f"crowd{number}"], env=session.environment, stdin=subprocess.PIPE,
                                          stdout=subprocess.PIPE, text=True, bufsize=1) for number in range(programs)]
        self.windows = [[] for _ in self.programs]

    def each(self, lines):
        """Gives each program its lines, all of them at once, and returns the answers."""
        for program, own in zip(self.programs, lines):
            program.stdin.write("".join(line + "\n" for line in own))
            program.stdin.flush()
        return [[int(program.stdout.readline()) for _ in own] for program, own in zip(self.programs, lines)]

    def open(self, count):
        """Windows come as in life: each is made, named and mapped before the next."""
        for number in range(count):
            place = number % len(self.programs)
            self.windows[place].append(None)
        for turn in range(max(map(len, self.windows))):
            mine = [len(own) > turn for own in self.windows]
            made = self.each([[f"create {random.randrange(1400)} {random.randrange(600)} 400 300"] * here for here in mine])
            for own, answers in zip(self.windows, made):
                own[turn:turn + 1] = answers
            self.each([[f"text {answers[0]} _NET_WM_NAME UTF8_STRING Window {turn}", f"map {answers[0]}"] if answers else []
                       for answers in made])

    def close(self):
        for turn in range(max(map(len, self.windows))):
            self.each([[f"destroy {own[turn]}"] if len(own) > turn else [] for own in self.windows])
        self.windows = [[] for _ in self.programs]

    def end(self):
        for program in self.programs:
            program.stdin.close()
        for program in self.programs:
            program.wait()


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


def panel_window(session):
    """The first dock; none while there is none."""
    for window in session.clients():
        try:
            if "_NET_WM_WINDOW_TYPE_DOCK" in session.atoms(window, "_NET_WM_WINDOW_TYPE"):
                return window.id
        except error.XError:
            continue
    return None


def wait(condition, what, timeout):
    """As `eventually`, at a pace that leaves the server its time."""
    end = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"not within {timeout} s: {what}")
        time.sleep(0.1)


def settle(session, process, count, timeout):
    """Waits until the window manager lists so many windows and the process has come to rest."""
    wait(lambda: len(session.property(session.root, "_NET_CLIENT_LIST") or []) == count,
         f"the window manager has {count} windows", timeout)
    before, end = cpu_seconds(process.pid), time.monotonic() + timeout
    while time.monotonic() < end:
        time.sleep(QUIET)
        now = cpu_seconds(process.pid)
        if now - before < 0.01 * QUIET:
            return
        before = now


def change_focus(session, windows):
    for number in random.sample(windows, FOCUS_CHANGES):
        session.ask(session.window(number), "_NET_ACTIVE_WINDOW", 2, X.CurrentTime, 0)
        wait(lambda: session.active() == number, "the window is active", 120)


def measure(command, client, count, programs, idle, settings):
    """CPU of each phase in milliseconds, and its duration in seconds; of doing nothing, milliseconds a second."""
    def phases(session, process, crowd, listed):
        timeout = 60 + count / 10

        def phase(act, after):
            before, start = cpu_seconds(process.pid), time.monotonic()
            act()
            settle(session, process, after, timeout)
            return (cpu_seconds(process.pid) - before) * 1000, time.monotonic() - start - QUIET

        yield "appear", *phase(lambda: crowd.open(count), listed + count)
        windows = [number for own in crowd.windows for number in own]
        yield "focus", *phase(lambda: change_focus(session, windows), listed + count)
        before, start = cpu_seconds(process.pid), time.monotonic()
        time.sleep(idle)
        yield "idle", (cpu_seconds(process.pid) - before) * 1000 / (time.monotonic() - start), idle
        yield "close", *phase(crowd.close, listed)

    yield from with_crowd(command, client, count, programs, settings, phases)


def measure_stalls(command, client, count, programs, settings):
    """While windows come and while they go: the longest stall, the most work in one, the longest of the window beside."""
    def phases(session, process, crowd, listed):
        stalls = Stalls(session, process.pid, panel_window(session))
        try:
            for name, act, after in (("appear", lambda: crowd.open(count), listed + count), ("close", crowd.close, listed)):
                time.sleep(1)
                stalls.take()
                act()
                wait(lambda: len(session.property(session.root, "_NET_CLIENT_LIST") or []) == after, name, 60 + count / 10)
                yield name, *stalls.take()
        finally:
            stalls.end()

    yield from with_crowd(command, client, count, programs, settings, phases)


def with_crowd(command, client, count, programs, settings, phases):
    random.seed(count)
    with Session() as session:
        session.write_settings(**settings)
        process = session.start(*shlex.split(command), env={"BAR_DEBUG": "0", "BAR_TIMING": "0"},
                                log=os.environ.get("CROWD_LOG"))
        eventually(lambda: panel_window(session), "the panel is there", 20)
        time.sleep(3)
        listed = len(session.property(session.root, "_NET_CLIENT_LIST"))
        crowd = Crowd(session, client, programs)
        yield from phases(session, process, crowd, listed)
        crowd.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=PROGRAM, help="the panel's command line")
    parser.add_argument("--client", required=True, help="the program that opens windows")
    parser.add_argument("--windows", default="100,500,2000")
    parser.add_argument("--programs", type=int, default=20)
    parser.add_argument("--idle", type=float, default=20, help="seconds of the idle measurement")
    parser.add_argument("--grouping", help="a setting of ours: always, automatic, never")
    parser.add_argument("--only", choices=("cpu", "stalls"))
    options = parser.parse_args()

    settings = {"grouping": options.grouping} if options.grouping else {}
    print(f"{options.program} on {WINDOW_MANAGER}, {options.programs} programs")
    crowd = options.program, options.client
    for count in map(int, options.windows.split(",")):
        if options.only != "stalls":
            for what, cpu, took in measure(*crowd, count, options.programs, options.idle, settings):
                unit = "ms a second" if what == "idle" else "ms of CPU"
                print(f"{count:6} windows {what:8} {cpu:9.2f} {unit:12} in {took:6.1f} s", flush=True)
        if options.only != "cpu":
            for what, longest, work, beside in measure_stalls(*crowd, count, options.programs, settings):
                print(f"{count:6} windows {what:8} longest stall {longest:6.1f} ms, at most {work:6.1f} ms of work in one, "
                      f"{beside:6.1f} ms beside", flush=True)


if __name__ == "__main__":
    main()
