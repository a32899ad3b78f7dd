"""A private X session for one test: a server, a window manager, a home folder, and hands and eyes to use it with.

Nothing here knows the program from inside: programs are started as a user starts them, driven by XTEST, and judged by
window properties, pixels and files."""

import os
import plistlib
import random
import re
import shutil
import subprocess
import tempfile
import time
import unittest

from PIL import Image
from Xlib import X, XK, Xutil, display, error
from Xlib.ext import randr, xtest
from Xlib.protocol import event

PROGRAM = os.environ["VANTRY_PROGRAM"]
WINDOW_MANAGER = os.environ.get("VANTRY_WM", "openbox")

DOMAIN = "com.merrowen.vantry"

# What window managers find in their user's home, so that nothing of theirs stands in the tests' way.
HOMES = {
    # It complains, in a window, of having nothing to set its style's wallpaper with.
    ".fluxbox/overlay": "background: unset\n",
}

# The sessions that run now; what they saw is told when a wait is in vain.
running = []


def eventually(condition, what, timeout=10.0):
    """Waits until the condition gives something true, and returns that."""
    end = time.monotonic() + timeout
    while True:
        try:
            result = condition()
        except (error.BadWindow, error.BadDrawable, error.BadMatch):
            result = None
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError("\n".join([f"not within {timeout} s: {what}"] + [session.report() for session in running]))
        time.sleep(0.01)


class Bar:
    """The bar's places at the default size, worked out from its published measures, in points from the upper left; what
    the methods give is in pixels, of which a point has `scale`."""

    SCALE = 1.22

    SETTINGS = {"launcher": "showLauncher", "search": "showSearch", "showDesktop": "showDesktopButton",
                "finder": "showFinderButton"}

    def __init__(self, window_x, window_y, settings, scale=1):
        size = lambda base: int(base * self.SCALE + 0.5)
        self.scale = scale
        self.x, self.y, self.height = window_x, window_y, size(52)
        self.pad, self.item, self.icon = size(8), size(46), size(26)
        widths = {"launcher": self.item, "search": size(160), "showDesktop": self.item, "finder": self.item}
        self.places, x = {}, self.pad
        for name, width in widths.items():
            if not settings.get(self.SETTINGS[name], True):
                continue
            self.places[name] = (x, width)
            x += width + self.pad
        self.apps = x

    def middle(self, name):
        x, width = self.places[name]
        return self._pixel(x + width // 2)

    def _pixel(self, x):
        return self.x + int(x * self.scale), self.y + int(self.height // 2 * self.scale)

    def button(self, index):
        return self._pixel(self.apps + index * self.item + self.item // 2)

    def trash(self, buttons):
        return self._pixel(self.apps + max(1, buttons) * self.item + self.pad + self.item // 2)


def frame(session, window):
    """x, y, width, height with decorations."""
    x, y, width, height = session.geometry(window)
    left, right, top, bottom = session.property(window, "_NET_FRAME_EXTENTS") or (0, 0, 0, 0)
    return x - left, y - top, width + left + right, height + top + bottom


def foot(session, window):
    _, y, _, height = frame(session, window)
    return y + height


def is_full_screen(session, window):
    return "_NET_WM_STATE_FULLSCREEN" in session.atoms(window, "_NET_WM_STATE")


class SessionTest(unittest.TestCase):
    """Tests that each have a session of their own."""

    WORLD = {}

    def setUp(self):
        self.session = Session(**self.WORLD)
        self.session.__enter__()
        self.addCleanup(self.session.__exit__)


class World:
    """A user's folders, with just the programs that the tests use. Nothing else that is installed, of the settings and of
    the language of whoever runs the tests is seen from in here; unless it is the installed programs that matter."""

    # What the programs themselves need of the machine.
    SHARED = ("glib-2.0", "icons/hicolor", "mime", "pixmaps", "themes", "xfwm4")
    # The programs' entries, and the colours that their icons have here unless it is the shipped ones that matter.
    SHIPPED = {"XTerm": ("debian-xterm.desktop", (220, 40, 40)), "L3afpad": ("l3afpad.desktop", (40, 180, 60)),
               "FeatherPad": ("featherpad.desktop", (50, 80, 230))}
    OWN = {"Client": (230, 190, 20), "Painter": (200, 40, 210), "Storm": (20, 190, 210)}

    def __init__(self, has_shipped_icons=False, has_installed_programs=False):
        self.has_shipped_icons = has_shipped_icons
        self.has_installed_programs = has_installed_programs
        self.colors = {name: color for name, (_, color) in self.SHIPPED.items()} | self.OWN

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="vantry-e2e-")
        kept = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS")
        self.environment = {name: os.environ[name] for name in kept if name in os.environ}
        for variable, name in {
            "HOME": "home", "XDG_CONFIG_HOME": "home/.config", "XDG_DATA_HOME": "home/.local/share",
            "XDG_STATE_HOME": "home/.local/state", "XDG_CACHE_HOME": "home/.cache", "XDG_RUNTIME_DIR": "run",
            "XDG_DATA_DIRS": "share", "XDG_CONFIG_DIRS": "etc",
        }.items():
            path = os.path.join(self.folder, name)
            os.makedirs(path, mode=0o700, exist_ok=True)
            self.environment[variable] = path
        self.environment["LC_ALL"] = "C.UTF-8"
        if self.has_installed_programs:
            self.environment["XDG_DATA_DIRS"] += ":/usr/local/share:/usr/share"
        for name, text in HOMES.items():
            path = os.path.join(self.environment["HOME"], name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="ascii") as file:
                file.write(text)
        for name in self.SHARED:
            self._share("/usr/share/" + name, "share/" + name)
        self._share("/usr/share/dbus-1/services/org.xfce.Xfconf.service", "share/dbus-1/services/org.xfce.Xfconf.service")
        self._share("/etc/xdg/openbox", "etc/openbox")
        self._install_programs()
        return self

    def __exit__(self, *unused):
        shutil.rmtree(self.folder, ignore_errors=True)

    def _share(self, path, name):
        place = os.path.join(self.folder, name)
        os.makedirs(os.path.dirname(place), exist_ok=True)
        if os.path.exists(path):
            os.symlink(path, place)

    def _install_programs(self):
        folder = os.path.join(self.folder, "share/applications")
        os.makedirs(folder)
        for name, color in self.colors.items():
            icon = os.path.join(self.folder, name + ".png")
            Image.new("RGB", (64, 64), color).save(icon)
            entry = f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\nIcon={icon}\nStartupWMClass={name}\n"
            if name in self.SHIPPED:
                with open("/usr/share/applications/" + self.SHIPPED[name][0], encoding="utf-8") as file:
                    entry = file.read()
                if not self.has_shipped_icons:
                    entry = re.sub("(?m)^Icon=.*$", "Icon=" + icon, entry)
            file_name = self.SHIPPED[name][0] if name in self.SHIPPED else name + ".desktop"
            with open(os.path.join(folder, file_name), "w", encoding="utf-8") as file:
                file.write(entry)

    def run(self, *arguments, env=None):
        """Runs the program to its end, and gives its status and what it said."""
        return subprocess.run([PROGRAM, *arguments], env={**self.environment, **(env or {})}, capture_output=True,
                              text=True, timeout=20)


class Session(World):
    def __init__(self, window_manager=WINDOW_MANAGER, size="1920x1080", **world):
        super().__init__(**world)
        self.window_manager_name = window_manager
        self.size = size
        self.scale = 1
        self.processes = []
        self.log_file = None

    def __enter__(self):
        super().__enter__()
        running.append(self)
        try:
            self._start_server()
            self.start_bus()
            if self.window_manager_name:
                self.start_window_manager()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *unused):
        running.remove(self)
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        super().__exit__()

    # Programs

    def start(self, *arguments, env=None, log=None):
        with open(log or os.devnull, "wb") as output:
            process = subprocess.Popen(arguments, env={**self.environment, **(env or {})}, stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=output, start_new_session=True)
        self.processes.append(process)
        return process

    def set_scale(self, scale):
        """So many pixels to a point, as a session of that resolution says it."""
        self.scale = scale
        subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {round(96 * scale)}\n".encode(), env=self.environment, check=True)

    def _start_server(self):
        # A number of our own choice takes the server's lock file; one that the server chooses takes none, and two
        # servers that start at once may then share a socket.
        for _ in range(20):
            self.environment["DISPLAY"] = ":" + str(random.randrange(100, 30000))
            self.server = subprocess.Popen(
                ["Xvfb", self.environment["DISPLAY"], "-screen", "0", self.size + "x24", "-nolisten", "tcp", "-noreset"],
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.display = eventually(lambda: self.server.poll() is not None or self._connect(), "the X server answers", 20)
            if self.server.poll() is None:
                break
        self.processes.append(self.server)
        self.root = self.display.screen().root

    def _connect(self):
        try:
            return display.Display(self.environment["DISPLAY"])
        except error.DisplayConnectionError:
            return None

    def end_bus(self):
        bus = next(process for process in self.processes if process.args[0] == "dbus-daemon")
        bus.terminate()
        bus.wait(5)
        self.processes.remove(bus)

    def start_bus(self, *arguments):
        read, write = os.pipe()
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address", str(write), *arguments],
                               pass_fds=[write], env=self.environment, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(bus)
        os.close(write)
        # One that is started at the same address has another identity.
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = os.read(read, 4096).decode().strip().split(",guid=")[0]
        os.close(read)

    def start_window_manager(self):
        self.window_manager = self.start(*self.window_manager_name.split())
        eventually(lambda: self.property(self.root, "_NET_SUPPORTING_WM_CHECK"), "a window manager runs", 20)
        # One that has just started may let the first window go by.
        probe = self.root.create_window(0, 0, 100, 100, 0, X.CopyFromParent)

        def is_managed():
            if not self.property(probe, "WM_STATE"):
                probe.map()
            return probe.id in [window.id for window in self.clients()]

        eventually(is_managed, "it manages windows", 20)
        probe.destroy()
        eventually(lambda: probe.id not in [window.id for window in self.clients()], "and lets them go")

    def start_bar(self, *arguments, env=None, wait=True):
        self.log_file = os.path.join(self.folder, f"vantry-{len(self.processes)}.log")
        variables = {"BAR_DEBUG": "1", "BAR_TIMING": "1", **(env or {})}
        process = self.start(PROGRAM, *arguments, env=variables, log=self.log_file)
        process.log_file = self.log_file
        if wait:
            # The first painting comes when all that belongs to the start is done.
            eventually(self.is_bar_painted, "the bar is on the screen: " + self.log(), 20)
        return process

    def restart_bar(self):
        """Ends a bar that runs, as a log-out does, and starts one."""
        for process in [process for process in self.processes if hasattr(process, "log_file")]:
            process.terminate()
            process.wait(5)
            self.processes.remove(process)
        return self.start_bar()

    def report(self):
        """What stands on the screen and in the program's log, for whoever reads a failure."""
        try:
            ended = [process.args[0] for process in self.processes if process.poll() is not None]
            lines = [f"ended: {ended}", f"active: {self.active():#x}"]
            for window in self.clients():
                lines.append(" ".join(map(str, (hex(window.id), self.class_of(window), self.property(window, "WM_NAME"),
                                                self.property(window, "WM_STATE")))))
        except (error.XError, error.ConnectionClosedError) as fault:
            lines = [f"the screen can't be seen: {fault}"]
        return "\n".join(lines + self.log().splitlines()[-40:])

    def log(self):
        if not self.log_file:
            return ""
        with open(self.log_file, encoding="utf-8", errors="replace") as file:
            return file.read()

    # Windows

    def atom(self, name):
        return self.display.intern_atom(name)

    def property(self, window, name):
        try:
            answer = window.get_full_property(self.atom(name), X.AnyPropertyType)
        except error.BadWindow:
            return None
        return None if answer is None else answer.value

    def atoms(self, window, name):
        return [self.display.get_atom_name(atom) for atom in self.property(window, name) or []]

    def window(self, number):
        return self.display.create_resource_object("window", number)

    def clients(self):
        """The windows that the window manager manages, at the bottom first, where it has stacked any yet."""
        numbers = self.property(self.root, "_NET_CLIENT_LIST_STACKING")
        if numbers is None:
            numbers = self.property(self.root, "_NET_CLIENT_LIST")
        return [self.window(number) for number in ([] if numbers is None else numbers)]

    def bars(self):
        """The mapped bars, from the left."""
        found = []
        for window in self.clients():
            if "_NET_WM_WINDOW_TYPE_DOCK" not in self.atoms(window, "_NET_WM_WINDOW_TYPE"):
                continue
            if self.class_of(window)[1].capitalize() == "Vantry":
                if window.get_attributes().map_state == X.IsViewable:
                    found.append(window)
        return sorted(found, key=lambda window: self.geometry(window)[:2])

    def frame_of(self, window):
        """The root's child that the window is, or is in."""
        while True:
            parent = window.query_tree().parent
            if parent == 0 or parent.id == self.root.id:
                return window
            window = parent

    def shown(self):
        """The numbers of the windows on the screen, docks left out, the frontmost first."""
        inside = {self.frame_of(window).id: window.id for window in self.clients()
                  if "_NET_WM_WINDOW_TYPE_DOCK" not in self.atoms(window, "_NET_WM_WINDOW_TYPE")
                  and not self.is_minimised(window)}
        return [inside[frame.id] for frame in reversed(self.root.query_tree().children)
                if frame.id in inside and frame.get_attributes().map_state == X.IsViewable]

    def popups(self, kind):
        """The program's mapped windows of that type that no window manager manages."""
        found = []
        for window in self.root.query_tree().children:
            try:
                attributes = window.get_attributes()
                if attributes.override_redirect and attributes.map_state == X.IsViewable:
                    if f"_NET_WM_WINDOW_TYPE_{kind}" in self.atoms(window, "_NET_WM_WINDOW_TYPE"):
                        if self.class_of(window)[1].capitalize() == "Vantry":
                            found.append(window)
            except (error.BadWindow, error.BadDrawable):
                continue
        return found

    def geometry(self, window):
        """x, y, width, height of the window without decorations, on the root."""
        size = window.get_geometry()
        place = window.translate_coords(self.root, 0, 0)
        return -place.x, -place.y, size.width, size.height

    def bar(self, index=0):
        x, y, _, _ = self.geometry(self.bars()[index])
        return Bar(x, y, self.settings_or_none() or {}, self.scale)

    def windows_of(self, wm_class):
        return [window for window in self.clients() if wm_class in self.class_of(window)]

    def titled(self, title):
        """A window of that title; None where there is none."""
        return next((window for window in self.clients() if self.property(window, "_NET_WM_NAME") == title.encode()), None)

    @staticmethod
    def class_of(window):
        try:
            return window.get_wm_class() or ("", "")
        except error.BadWindow:
            return "", ""

    def open(self, wm_class, *arguments, env=None):
        """Starts a program and gives the new window of that class."""
        before = {window.id for window in self.windows_of(wm_class)}
        self.start(*arguments, env=env)
        return eventually(lambda: next((window for window in self.windows_of(wm_class) if window.id not in before), None),
                          f"{arguments[0]} opens a window", 20)

    def xterm(self, title="Terminal", geometry="80x24+200+150"):
        window = self.open("XTerm", "xterm", "-title", title, "-geometry", geometry, "-e", "sleep", "1000")
        eventually(lambda: self.active() == window.id, "the new terminal is active")
        return window

    def active(self):
        value = self.property(self.root, "_NET_ACTIVE_WINDOW")
        return value[0] if value else 0

    def is_minimised(self, window):
        state = self.property(window, "WM_STATE")
        return bool(state) and state[0] == 3

    def ask(self, window, message, *data):
        """Sends the window manager a client message, as a pager does."""
        values = (list(data) + [0] * 5)[:5]
        note = event.ClientMessage(window=window, client_type=self.atom(message), data=(32, values))
        self.root.send_event(note, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.sync()

    def activate(self, window):
        self.ask(window, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime, 0)
        eventually(lambda: self.active() == window.id, "the window is active")

    def minimise(self, window):
        self.ask(window, "WM_CHANGE_STATE", 3)
        eventually(lambda: self.is_minimised(window), "the window is minimised")

    # Hands

    def move(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=int(x), y=int(y))
        self.display.sync()

    def press(self, button=1):
        xtest.fake_input(self.display, X.ButtonPress, button)
        self.display.sync()

    def release(self, button=1):
        xtest.fake_input(self.display, X.ButtonRelease, button)
        self.display.sync()

    def click(self, point, button=1):
        self.move(*point)
        self.press(button)
        self.release(button)

    def drag(self, start, end, steps=12):
        """As fast as a hand: what comes while a window manager holds a press back is told with the pointer's last place."""
        self.move(*start)
        self.press()
        for step in range(1, steps + 1):
            time.sleep(0.01)
            self.move(start[0] + (end[0] - start[0]) * step / steps, start[1] + (end[1] - start[1]) * step / steps)
        self.release()

    def key(self, *names):
        """Presses keys one after the other, by what is written on them; "Super+q" holds the first down."""
        for name in names:
            parts = [part + "_L" if part in ("Super", "Control", "Shift", "Alt") else part for part in name.split("+")]
            codes = [self.display.keysym_to_keycode(XK.string_to_keysym(part)) for part in parts]
            for code in codes:
                xtest.fake_input(self.display, X.KeyPress, code)
            for code in reversed(codes):
                xtest.fake_input(self.display, X.KeyRelease, code)
            self.display.sync()

    def type(self, text):
        for letter in text:
            self.key("space" if letter == " " else letter)

    # Eyes

    def picture(self, x=0, y=0, width=None, height=None):
        screen = self.display.screen()
        width, height = width or screen.width_in_pixels, height or screen.height_in_pixels
        raw = self.root.get_image(int(x), int(y), int(width), int(height), X.ZPixmap, 0xFFFFFFFF)
        return Image.frombytes("RGB", (int(width), int(height)), raw.data, "raw", "BGRX")

    def icon_picture(self, bar, centre_x, lift=True):
        """The square where the icon of the button around `centre_x` is painted, at the bottom edge."""
        top = bar.y + (bar.height - bar.icon) / 2 - (4 if lift else 0)
        return self.picture(centre_x - bar.icon // 2, int(top + 0.5), bar.icon, bar.icon)

    def names(self, index=0):
        """The programs whose buttons stand on a bar, from the left, known by the colours of their icons; none for one that
        has a colour of its own, unless it is the last."""
        bars = self.bars()
        if index >= len(bars):
            return []
        bar, width = self.bar(index), self.geometry(bars[index])[2]
        # Of the window itself: a compositing manager may be behind with the screen until the next painting.
        raw = bars[index].get_image(0, bar.button(0)[1] - bar.y, width, 1, X.ZPixmap, 0xFFFFFFFF)
        row = Image.frombytes("RGB", (width, 1), raw.data, "raw", "BGRX")
        places = (bar.button(index)[0] - bar.x for index in range(width // bar.item))
        names = [self._named(row.getpixel((x, 0))) for x in places if x < width]
        while names and not names[-1]:
            names.pop()
        return names

    def _named(self, pixel):
        return next((name for name, color in self.colors.items()
                     if all(abs(a - b) < 8 for a, b in zip(color, pixel))), None)

    def is_bar_painted(self):
        x, y, width, height = self.geometry(self.bars()[0]) if self.bars() else (0, 0, 1, 1)
        return len(set(self.picture(x, y, width, height).getdata())) > 2

    def is_showing_desktop(self):
        """Whether the button is lit."""
        bar = self.bar()
        x, y = bar.middle("showDesktop")
        plain = self.picture(self.geometry(self.bars()[0])[2] - 20, bar.y + 12, 1, 1)
        return plain.tobytes() != self.picture(x - 20, bar.y + 12, 1, 1).tobytes()

    # Files

    def preferences(self, domain=DOMAIN):
        return os.path.join(self.environment["XDG_CONFIG_HOME"], "vantry", "Preferences", domain + ".plist")

    def settings(self):
        try:
            with open(self.preferences(), "rb") as file:
                return plistlib.load(file)
        except FileNotFoundError:
            return {}

    def settings_or_none(self):
        """The settings, or none while the file is no property list."""
        try:
            return self.settings()
        except Exception:  # plistlib raises what its parsers raise
            return None

    def write_settings(self, **values):
        """Changes settings as another program would: reads, changes and replaces the file."""
        settings = {**self.settings(), **values}
        path = self.preferences()
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path + ".other", "wb") as file:
            plistlib.dump(settings, file)
        os.replace(path + ".other", path)

    def speak_german(self):
        """Programs started from now on write numbers with a comma."""
        folder = os.path.join(self.folder, "locales")
        os.makedirs(folder)
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", os.path.join(folder, "de_DE.UTF-8")], check=True)
        self.environment.update(LC_ALL="de_DE.UTF-8", LOCPATH=folder)

    def trash_folder(self):
        path = os.path.join(self.environment["XDG_DATA_HOME"], "Trash", "files")
        os.makedirs(path, exist_ok=True)
        return path

    def set_monitor(self, name, geometry, output):
        subprocess.run(["xrandr", "--setmonitor", name, geometry, output], env=self.environment, check=True)

    def split_monitors(self):
        """Two monitors side by side on the one screen."""
        self.set_monitor("LEFT", "960/250x1080/280+0+0", "screen")
        self.set_monitor("RIGHT", "960/250x1080/280+960+0", "none")

    def join_monitors(self):
        subprocess.run(["xrandr", "--delmonitor", "RIGHT"], env=self.environment, check=True)


class Client:
    """A program with windows of any kind, which counts what is typed, or with a key of its own."""

    def __init__(self, session):
        self.session = session
        self.display = display.Display(session.environment["DISPLAY"])
        self.root = self.display.screen().root
        self.presses = []

    def open(self, x, y, width, height, kind="NORMAL", state=(), **hints):
        atoms = lambda names: [self.display.intern_atom("_NET_WM_" + name) for name in names]
        window = self.root.create_window(x, y, width, height, 0, X.CopyFromParent, event_mask=X.KeyPressMask)
        window.set_wm_class("client", "Client")
        window.set_wm_normal_hints(flags=Xutil.USPosition | Xutil.USSize | hints.pop("flags", 0), **hints)
        window.change_property(self.display.intern_atom("_NET_WM_WINDOW_TYPE"), 4, 32, atoms(["WINDOW_TYPE_" + kind]))
        window.change_property(self.display.intern_atom("_NET_WM_STATE"), 4, 32, atoms("STATE_" + name for name in state))
        window.map()
        self.display.sync()
        return eventually(lambda: next((each for each in self.session.clients() if each.id == window.id), None),
                          "the window is managed")

    def grab(self, code, modifiers):
        self.root.grab_key(code, modifiers, False, X.GrabModeAsync, X.GrabModeAsync)
        self.display.sync()

    def seen(self, code):
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == X.KeyPress:
                self.presses.append(event.detail)
        return self.presses.count(code)
