"""Windows, titles, hovers, clicks, menus and searches without end, on a private Xvfb with a window manager: whether memory,
threads and descriptors of the program stay what they were.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/churn.py [--minutes N]
"""

import argparse
import os
import random
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from program import Client, cpu_seconds  # noqa: E402
from session import Session, eventually  # noqa: E402


def own_mib(pid):
    """What no other process has a share in: it doesn't change with what else runs."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("Anonymous:")) / 1024


def counts(pid):
    return len(os.listdir(f"/proc/{pid}/task")), len(os.listdir(f"/proc/{pid}/fd"))


def churn(session, client, windows):
    """A few seconds of everything."""
    bar = session.bar()
    for _ in range(4):
        windows.append(client.open(random.randrange(1400), random.randrange(600), f"window {random.random()}"))
        time.sleep(0.05)
    for number in range(20):
        random.choice(windows).set_wm_name(f"title {number} {random.random()}")
        client.display.flush()
    for _ in range(6):
        session.click(bar.button(random.randrange(3)))
        time.sleep(0.05)
    session.move(*bar.button(0))
    time.sleep(0.8)
    session.click(bar.button(1), 3)
    time.sleep(0.2)
    session.key("Escape")
    session.click(bar.middle("search"))
    session.type("win")
    time.sleep(0.2)
    session.key("Escape")
    session.move(900, 300)
    while len(windows) > 12:
        windows.pop(random.randrange(len(windows))).destroy()
    client.display.flush()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--minutes", type=float, default=30)
    options = parser.parse_args()
    with Session() as session:
        process = session.start_bar(env={"BAR_DEBUG": "0", "BAR_TIMING": "0"}, wait=False)
        eventually(session.bars, "the bar is there")
        session.xterm()
        clients, windows = [Client(session, "One"), Client(session, "Two")], [[], []]
        start, rounds, told = time.monotonic(), 0, -1
        print("minutes  rounds  own memory (MiB)  threads  descriptors  CPU (s)")
        while time.monotonic() < start + options.minutes * 60:
            for client, own in zip(clients, windows):
                churn(session, client, own)
            rounds += 1
            minutes = int((time.monotonic() - start) / 60)
            if minutes > told and minutes % 2 == 0:
                told = minutes
                threads, descriptors = counts(process.pid)
                print(f"{minutes:7} {rounds:7} {own_mib(process.pid):17.2f} {threads:8} {descriptors:12} "
                      f"{cpu_seconds(process.pid):8.1f}", flush=True)


if __name__ == "__main__":
    main()
