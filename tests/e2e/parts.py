"""What a user meets around the bar and how it is handled: menus, panels that hovering opens, the search box. Each is mixed
into tests that have a session."""

import os

import dbus
import dbus.lowlevel
from Xlib import X, Xutil, display

from session import eventually

CARD, GAP, MARGIN, THUMBNAIL = 176, 8, 10, 104


class Program:
    """A program of our own with several windows, each of one colour."""

    def __init__(self, session):
        self.session = session
        self.display = display.Display(session.environment["DISPLAY"])

    def create(self, title, color, x, y, width=480, height=320):
        screen = self.display.screen()
        window = screen.root.create_window(x, y, width, height, 0, screen.root_depth, X.InputOutput, X.CopyFromParent,
                                           background_pixel=color)
        window.set_wm_class("painter", "Painter")
        window.set_wm_name(title)
        window.set_wm_normal_hints(flags=Xutil.USPosition | Xutil.USSize)
        window.map()
        self.display.flush()
        return window

    def open(self, *arguments):
        window = self.create(*arguments)
        eventually(lambda: self.session.active() == window.id, "the new window is active")
        return window

    def close(self, window):
        window.destroy()
        self.display.flush()


class Counter:
    """A program that tells a number for an application's icon; the badge lasts as long as it stays."""

    def __init__(self, session, entry):
        self.bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.entry = entry

    def tell(self, number):
        update = dbus.lowlevel.SignalMessage("/com/canonical/unity/launcherentry/1",
                                             "com.canonical.Unity.LauncherEntry", "Update")
        update.append("application://" + self.entry, {"count": dbus.Int64(number), "count-visible": True},
                      signature="sa{sv}")
        self.bus.send_message(update)
        self.bus.flush()

    def end(self):
        self.bus.close()


class Menus:
    def install(self, name, command, *lines):
        folder = os.path.join(self.session.environment["XDG_DATA_HOME"], "applications")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, f"test-{len(os.listdir(folder))}.desktop"), "w", encoding="utf-8") as file:
            file.write("\n".join(["[Desktop Entry]", "Type=Application", "Name=" + name, "Exec=" + command, *lines, ""]))

    # Hands

    def open(self, point):
        """Opens a menu by a right click, and gives its window."""
        self.session.click(point, 3)
        return eventually(lambda: self.menus() and self.has_keyboard() and self.menus()[0], "the menu opens")

    def choose(self, point, *keys):
        self.open(point)
        self.session.key(*keys)
        eventually(lambda: not self.menus(), "a choice closes the menu")

    def entry(self, number):
        """The keys that choose the nth entry of those that can be chosen."""
        return ["Down"] * number + ["Return"]

    # Eyes

    def menus(self):
        """Previews, which are windows of the same kind, are switched off."""
        return self.session.popups("POPUP_MENU")

    def has_keyboard(self):
        """Whether a program has all keys for itself. Asked for a time long past: what is never granted, or dates the
        latest grab, doesn't stand in the way of a program that asks next with the time of the click."""
        past = 1
        status = self.session.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, past)
        if status == X.GrabSuccess:
            self.session.display.ungrab_keyboard(X.CurrentTime)
        return status == X.AlreadyGrabbed

    def button(self, name):
        return self.session.bar().button(self.session.names().index(name))

    def empty_bar(self):
        bar = self.session.bar()
        return bar.x + 1500, bar.y + bar.height // 2

    def setting(self, name):
        return (self.session.settings_or_none() or {}).get(name)


class Panels:
    """The tooltip and the preview."""

    def popup(self, kind):
        """Where the one popup of that kind lies: x, y, width, height."""
        popups = self.session.popups(kind)
        return self.session.geometry(popups[0]) if len(popups) == 1 else None

    def tooltip(self):
        return eventually(lambda: self.popup("TOOLTIP"), "the tooltip shows")

    def preview(self):
        return eventually(lambda: self.popup("POPUP_MENU"), "the preview shows")

    def no_panels(self):
        return not self.session.popups("TOOLTIP") and not self.session.popups("POPUP_MENU")

    def card(self, preview, index):
        """The middle of a card's picture."""
        return preview[0] + MARGIN + index * (CARD + GAP) + CARD // 2, preview[1] + MARGIN + THUMBNAIL // 2

    def is_color(self, point, color):
        got = self.session.picture(*point, 1, 1).getpixel((0, 0))
        return all(abs(a - b) < 12 for a, b in zip(got, color))

    def travel(self, start, end, steps=60):
        for step in range(1, steps + 1):
            self.session.move(*(a + (b - a) * step / steps for a, b in zip(start, end)))


class SearchBox:
    def focus(self):
        """The window that gets what is typed."""
        focused = self.session.display.get_input_focus().focus
        return focused.id if hasattr(focused, "id") else focused

    def belongs_to_keyboard(self, window):
        """Whether the focus is on the window or on one inside of it."""
        number = self.focus()
        while number > 1 and number != self.session.root.id:
            if number == window.id:
                return True
            number = self.session.window(number).query_tree().parent.id
        return False

    def bar_has_keyboard(self):
        return self.belongs_to_keyboard(self.session.bars()[0])

    def press_into_field(self):
        self.session.click(self.session.bar().middle("search"))
        eventually(self.bar_has_keyboard, "the bar has the keyboard")

    def panel(self):
        """The results: x, y, width, height; none while there are none."""
        places = [self.session.geometry(popup) for popup in self.session.popups("POPUP_MENU")]
        return next((place for place in places if place[2] == 320), None)

    def rows(self):
        panel = self.panel()
        return (panel[3] - 8) // 40 if panel else 0
