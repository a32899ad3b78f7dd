"""Makes the pictures of README.md: the embedded desktop, and the bar on a real X server.

usage: VANTRY_PROGRAM=build/release/vantry python3 tools/pictures.py [PART...]   (a part is one of the functions below)
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
from PIL import Image  # noqa: E402
from Xlib import Xatom  # noqa: E402
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


def searching(session, name="search"):
    session.click(session.bar().middle("search"))
    eventually(lambda: session.display.get_input_focus().focus.id == session.bars()[0].id, "the bar has the keyboard")
    session.type("ter")
    session.key("Down")
    quiet(session)
    x, y, _, height = session.geometry(session.bars()[0])
    scale = session.scale
    save(session.picture(x, y - 200 * scale, 700 * scale, height + 200 * scale), name)
    session.key("Escape")


def set_wallpaper(session):
    """The embedded desktop's, on a real one."""
    screen = session.display.screen()
    width, height = screen.width_in_pixels, screen.height_in_pixels
    path = os.path.join(session.folder, "wallpaper.png")
    subprocess.run(["rsvg-convert", "-w", str(width), "-h", str(height), "-o", path,
                    os.path.join(ROOT, "art", "wallpaper.svg")], check=True)
    picture = Image.open(path).convert("RGB")
    pixmap = session.root.create_pixmap(width, height, screen.root_depth)
    pixmap.put_pil_image(pixmap.create_gc(), 0, 0, picture)
    session.root.change_property(session.atom("_XROOTPMAP_ID"), Xatom.PIXMAP, 32, [pixmap.id])
    session.root.change_attributes(background_pixmap=pixmap)
    session.root.clear_area(0, 0, 0, 0)
    session.display.sync()


def desktop():
    """A real desktop in use, with a preview open."""
    with Session(size="1600x900", has_shipped_icons=True) as session:
        home = session.environment["HOME"]
        shutil.copy("/usr/share/applications/pcmanfm.desktop", os.path.join(session.folder, "share/applications"))
        with open(os.path.join(session.environment["XDG_CONFIG_HOME"], "mimeapps.list"), "w", encoding="ascii") as file:
            file.write("[Default Applications]\ninode/directory=pcmanfm.desktop\n")
        for name in ("Garden", "Letters", "Music", "Recipes", "Travel"):
            os.makedirs(os.path.join(home, name))
        for name, text in {"garden plan.txt": "Beds\n\n  north   roses, lavender\n  south   tomatoes, basil\n  west    apple tree\n"
                           "\nTo do\n\n  prune the roses in March\n  new soil for the tomatoes\n",
                           "shopping.txt": "bread\nbutter\nplums\n"}.items():
            with open(os.path.join(home, name), "w", encoding="utf-8") as file:
                file.write(text)
        open(os.path.join(session.trash_folder(), "old list.txt"), "w", encoding="ascii").close()
        path = os.path.join(session.environment["XDG_CONFIG_HOME"], "pcmanfm/default")
        os.makedirs(path)
        with open(os.path.join(path, "pcmanfm.conf"), "w", encoding="ascii") as file:
            file.write("[ui]\npathbar_mode_buttons=1\nside_pane_mode=hidden;places\n")
        set_wallpaper(session)
        session.start("picom", "--backend", "xrender", "--config", "/dev/null")
        session.write_settings(barStyle="translucent", barOpacity=0.85, showFinderButton=False,
                               extraPinnedPaths=["/Applications/FeatherPad.app"])
        travel = session.open("Pcmanfm", "pcmanfm", os.path.join(home, "Travel"))
        manager = session.open("Pcmanfm", "pcmanfm", "-n", home)
        editor = session.open("L3afpad", "l3afpad", os.path.join(home, "garden plan.txt"))
        terminal = session.open("XTerm", "xterm", "-title", "home", "-fa", "Monospace", "-fs", "10", "-geometry", "70x16+880+90", "-e",
                                "sh", "-c", "cd; ls -l --color=always; sleep 1000")
        for window, place in ((manager, (60, 60, 640, 420)), (editor, (560, 300, 560, 380)), (travel, (200, 200, 520, 340))):
            session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0xF00 | 2 << 12, *place)
        for window in (manager, terminal, editor):
            session.activate(window)
        session.start_bar()
        time.sleep(2)
        bar = session.bar()
        index = next(number for number in range(5) if opens_preview(session, bar.button(number), 2))
        session.move(*bar.button(index))
        time.sleep(2)
        save(session.picture(), "desktop")


def opens_preview(session, point, cards):
    """Whether hovering there shows a preview of so many windows."""
    session.move(*point)
    time.sleep(1.5)
    panels = session.popups("POPUP_MENU")
    return bool(panels) and session.geometry(panels[0])[2] > 180 * cards


def on_x11():
    with Session() as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        for title, place, lines in (("terminal", "80x24+120+120", 40), ("second terminal", "80x24+240+260", 18)):
            session.open("XTerm", "xterm", "-title", title, "-geometry", place, "-fg", "#d0e0d0", "-bg", "#1c2028", "-e",
                         "sh", "-c", f"seq -f 'line %g of a text' {lines}; sleep 1000")
        session.open("FeatherPad", "featherpad", "--standalone", env={"QT_QPA_PLATFORM": "xcb"})
        editor = session.open("L3afpad", "l3afpad")
        session.write_settings(autoFitWindows=False)  # The windows stay as they are arranged here.
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

        def hovering(suffix):
            """The tooltip of the Trash, and the preview of a terminal, each with the bar around it."""
            bar = session.bar()
            names = session.names()
            for name, point, kind in (("tooltip", bar.trash(len(names)), "TOOLTIP"),
                                      ("preview", bar.button(names.index("XTerm")), "POPUP_MENU")):
                session.move(*point)
                x, y, width, height = session.geometry(eventually(lambda: next(iter(session.popups(kind)), None), name))
                time.sleep(1)
                top = max(0, min(y, bar.y) - 20)
                save(session.picture(max(0, x - 80), top, width + 160, max(y + height, bar.y + bar.height) + 20 - top
                                     if suffix == "top" else 1080 - top), f"{name}-{suffix}")
            session.move(1800, 500)

        hovering("bottom")
        session.write_settings(barEdge="top", barStyle="gradient", barTintHex="23395B")
        session.restart_bar()
        quiet(session)
        save(session.picture(), "x11-top")
        hovering("top")


def menus():
    """The three menus, each with the part of the bar that it belongs to."""
    with Session() as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        session.xterm("notes from Monday", "60x12+330+640")
        session.xterm("build log", "60x12+400+700")
        session.start_bar()
        eventually(lambda: len(session.names()) == 2, "both terminals have a button")
        bar = session.bar()
        x, y = bar.button(1)
        # The second place is that of "Show window" above the pointer, whose submenu opens.
        places = {"button": ((x, y), (x + 40, bar.y - 166)), "bar": ((1500, y), (1570, bar.y - 105)),
                  "launcher": (bar.middle("launcher"), (60, bar.y - 40))}
        for name, (click, over) in places.items():
            session.move(*click)
            session.press(3)
            session.release(3)
            time.sleep(1)
            session.move(*over)
            time.sleep(1)
            left = max(0, int(click[0]) - 220)
            save(session.picture(left, bar.y - 240, 640, 240 + bar.height), "menu-" + name)
            session.click((960, 200))
            time.sleep(0.5)


def open_settings(session):
    """Opens the settings window by the bar's menu, and gives it."""
    x, y, width, height = session.geometry(session.bars()[0])
    session.click((x + width - 300, y + height // 2), 3)
    eventually(lambda: session.popups("POPUP_MENU"), "the menu opens")
    session.key("Up", "Up", "Return")
    return eventually(lambda: session.titled("Vantry Settings"), "the settings window opens")


PANES = ("appearance", "buttons", "windows", "dock", "shortcuts", "general")


def settings(size="1920x1080", scale=1, pages=PANES, questions=(("undo", "General", 4), ("move", "Dock", 3))):
    """Every page of the settings window, light and dark, and its alerts."""
    for scheme in ("light", "dark"):
        with Session(size=size) as session:
            subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
            if scale != 1:
                session.set_scale(scale)
            session.start("/usr/bin/python3", os.path.join(ROOT, "tests", "clients", "portal.py"), scheme)
            session.xterm("notes from Monday", "100x30+60+60")
            session.start_bar()
            window = open_settings(session)

            def picture(name):
                session.move(5, 5)
                time.sleep(0.5)
                x, y, width, height = session.geometry(session.frame_of(window))
                margin = 12 * scale
                save(session.picture(x - margin, y - margin, width + 2 * margin, height + 2 * margin),
                     f"{'double-' if scale != 1 else ''}settings-{name}-{scheme}")

            for pane in pages:
                session.key(pane[0])
                picture(pane)
            for name, pane, presses in questions:
                session.key(pane[0])
                session.key(*["Tab"] * presses)
                before = len(session.clients())
                session.key("space")
                eventually(lambda: len(session.clients()) > before, "the alert opens")
                picture(name)
                session.key("Escape")
                eventually(lambda: len(session.clients()) == before, "Escape closes it")
                session.key(*["Shift+Tab"] * presses)


def status():
    """The icon in a tray, with its menu."""
    with Session() as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        session.start_bar()
        session.start("trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--heighttype",
                      "pixel", "--height", "32")
        time.sleep(2)
        session.click((1920 - 12, 16))
        eventually(lambda: session.popups("POPUP_MENU"), "the menu opens")
        session.key("Down", "Down")
        time.sleep(1)
        save(session.picture(1920 - 420, 0, 420, 180), "status-item")


def double_settings():
    """A page on a screen of twice the resolution."""
    settings("2560x1600", 2, ("shortcuts",), (("undo", "General", 4),))


def doubled():
    """On a screen of twice the resolution: the bar with a preview, search, and a menu."""
    with Session(size="2400x1350", has_shipped_icons=True) as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        session.set_scale(2)
        session.write_settings(autoFitWindows=False)
        session.open("XTerm", "xterm", "-title", "notes from Monday", "-geometry", "90x24+1300+60", "-fa", "DejaVu Sans Mono",
                     "-fs", "11", "-e", "sh", "-c", "seq -f 'line %g of a text' 20; sleep 1000")
        session.start_bar()
        quiet(session)
        bar = session.bar()
        x, y = bar.button(0)

        def part(name, left, width, height):
            save(session.picture(left, bar.y - height, width, 1350 - bar.y + height), "double-" + name)

        session.move(x, y)
        eventually(lambda: session.popups("POPUP_MENU"), "a preview")
        time.sleep(1)
        part("preview", 0, 1400, 340)
        session.press(3)
        session.release(3)
        time.sleep(1)
        session.move(x + 80, bar.y - 332)
        time.sleep(1)
        part("menu", 500, 1100, 470)
        session.click((1200, 200))
        searching(session, "double-search")


def film():
    """A window opened over the bar, and what becomes of it."""
    with Session() as session:
        subprocess.run(["xsetroot", "-solid", "#2d4a63"], env=session.environment, check=True)
        session.start_bar()
        session.xterm("terminal", "80x24+1100+120")
        session.move(1800, 500)

        def shot(number):
            picture = session.picture()
            save(picture.resize((picture.width // 2, picture.height // 2)), f"film-{number}")

        window = session.open("XTerm", "xterm", "-title", "over the bar", "-geometry", "100x50+200+120",
                              "-e", "sh", "-c", "seq -f 'line %g of a long text' 1 60; sleep 1000")
        time.sleep(2)
        session.ask(window, "_NET_MOVERESIZE_WINDOW", 1 | 0x300 | 2 << 12, 200, 420)
        time.sleep(0.1)
        shot(1)
        eventually(lambda: "tamer: nudging" in session.log(), "it is shrunk")
        time.sleep(0.15)
        shot(2)
        eventually(lambda: "tamer: placed" in session.log(), "it is placed")
        time.sleep(0.3)
        shot(3)


os.makedirs(PICTURES, exist_ok=True)
for part in (desktop, embedded, on_x11, menus, doubled, film, settings, double_settings, status):
    if len(sys.argv) < 2 or part.__name__ in sys.argv[1:]:
        part()
