"""Measures a keystroke in the search box until what it finds is on the screen: 500 applications, 200 windows.

usage: VANTRY_PROGRAM=build/release/vantry python3 bench/search_keys.py [--keys N]
"""

import argparse
import os
import statistics
import time

from program import Client, report
from session import Session, eventually


def install(session, count):
    folder = os.path.join(session.environment["XDG_DATA_HOME"], "applications")
    os.makedirs(folder, exist_ok=True)
    for number in range(count):
        with open(os.path.join(folder, f"bench{number}.desktop"), "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Tool {number} of the bench\nExec=true\nIcon=xterm-color\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--keys", type=int, default=200)
    options = parser.parse_args()

    with Session() as session:
        install(session, 500)
        client = Client(session)
        letters = "ab"
        for number in range(200):
            client.open(100 + number, 100, f"{letters[number % 2]}{letters[number // 2 % 2]} window {number}")
        client.display.sync()
        session.start_bar(env={"BAR_DEBUG": "0", "BAR_TIMING": "0"}, wait=False)
        eventually(session.bars, "the bar is there")
        time.sleep(3)
        bar = session.bar()
        x, width = bar.places["search"]
        session.click(bar.middle("search"))
        eventually(lambda: session.display.get_input_focus().focus.id == session.bars()[0].id, "the bar has the keyboard")
        time.sleep(0.5)

        # The titles of the first two rows of a full panel, above the box.
        strip = lambda: session.picture(bar.x + x + 42, bar.y + (bar.height - 32) // 2 - 328 + 20, 270, 70).tobytes()

        def stroke(name):
            before_picture, before = strip(), time.perf_counter()
            session.key(name)
            while strip() == before_picture:
                if time.perf_counter() - before > 5:
                    raise SystemExit(f"nothing came of {name}")
            return (time.perf_counter() - before) * 1000

        report("first keystroke, cold catalogue", [stroke("a")], "ms")
        samples = []
        while len(samples) < options.keys:
            # a -> ab -> a -> nothing typed -> b -> ...: every stroke changes the rows.
            for name in ("b", "BackSpace", "b", "BackSpace"):
                time.sleep(0.03)
                samples.append(stroke(name))
        report("keystroke to painted results", samples, "ms")
        polls = []
        for _ in range(50):
            before = time.perf_counter()
            strip()
            polls.append((time.perf_counter() - before) * 1000)
        report("of that, one look at the screen", polls, "ms")
        print(f"90th percentile {statistics.quantiles(samples, n=10)[8]:.2f} ms")


if __name__ == "__main__":
    main()
