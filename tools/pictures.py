"""Makes the pictures of README.md: the embedded desktop, and the bar on a real X server.

usage: VANTRY_PROGRAM=build/release/vantry python3 tools/pictures.py
"""

import os
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
from session import PROGRAM, Session, eventually  # noqa: E402

PICTURES = os.path.join(ROOT, "docs", "pictures")


def embedded():
    with tempfile.TemporaryDirectory() as state:
        environment = {key: value for key, value in os.environ.items() if key != "DISPLAY"}
        environment.update(XDG_STATE_HOME=state, XDG_RUNTIME_DIR=state)
        subprocess.run([PROGRAM, "--picture", os.path.join(PICTURES, "embedded.png")], env=environment, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def quiet(session):
    """Waits until two pictures in a row are the same."""
    session.move(1800, 500)
    last = None

    def is_quiet():
        nonlocal last
        now = session.picture().tobytes()
        same, last = now == last, now
        time.sleep(0.3)
        return same

    eventually(is_quiet, "the screen is quiet")


def save(picture, name):
    picture.save(os.path.join(PICTURES, name + ".png"), optimize=True)
    print(name)


def searching(session):
    session.click(session.bar().middle("search"))
    eventually(lambda: session.display.get_input_focus().focus.id == session.bars()[0].id, "the bar has the keyboard")
    session.type("ter")
    session.key("Down")
    quiet(session)
    x, y, _, height = session.geometry(session.bars()[0])
    save(session.picture(x, y - 200, 700, height + 200), "search")
    session.key("Escape")


def on_x11():
    with Session() as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        session.xterm("terminal", "80x24+120+120")
        session.xterm("second terminal", "80x24+240+260")
        session.open("FeatherPad", "featherpad", "--standalone", env={"QT_QPA_PLATFORM": "xcb"})
        editor = session.open("L3afpad", "l3afpad")
        session.start_bar()
        session.activate(editor)

        def strip(name, **settings):
            session.write_settings(**settings)
            session.restart_bar()
            quiet(session)
            x, y, width, height = session.geometry(session.bars()[0])
            save(session.picture(x, y - 10, width // 2, height + 10), name)

        quiet(session)
        save(session.picture(), "x11-bottom")
        searching(session)
        for style in ("solid", "translucent", "gradient"):
            strip("style-" + style, barStyle=style)
        for size in ("small", "medium", "large"):
            strip("size-" + size, barStyle="solid", barSize=size)
        session.write_settings(barEdge="top", barStyle="gradient", barTintHex="23395B")
        session.restart_bar()
        quiet(session)
        save(session.picture(), "x11-top")


os.makedirs(PICTURES, exist_ok=True)
embedded()
on_x11()
