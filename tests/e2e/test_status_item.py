"""The status item: in a tray and with a panel on the session bus, each there first, later, and once more."""

import unittest
from time import sleep

from gi.repository import Gio, GLib
from Xlib import X, display, error
from Xlib.protocol import event

from parts import Menus
from session import SessionTest, eventually


class Tray:
    """A panel's tray, which owns the screen's selection and takes icons in."""

    SIDE = 32
    BACKGROUND = (24, 60, 90)

    def __init__(self, session, color=None):
        self.display = display.Display(session.environment["DISPLAY"])
        # An icon may go while it is taken in.
        self.display.set_error_handler(lambda *_: None)
        screen = self.display.screen()
        pixel = self.BACKGROUND[0] << 16 | self.BACKGROUND[1] << 8 | self.BACKGROUND[2]
        self.window = screen.root.create_window(300, 200, 4 * self.SIDE, self.SIDE, 0, X.CopyFromParent,
                                                override_redirect=True, background_pixel=pixel,
                                                event_mask=X.SubstructureNotifyMask)
        self.window.map()
        if color:
            channels = [channel * 257 for channel in color] * 4
            self.window.change_property(self._atom("_NET_SYSTEM_TRAY_COLORS"), self._atom("CARDINAL"), 32, channels)
        selection = self._atom("_NET_SYSTEM_TRAY_S0")
        self.window.set_selection_owner(selection, X.CurrentTime)
        note = event.ClientMessage(window=screen.root, client_type=self._atom("MANAGER"),
                                   data=(32, [X.CurrentTime, selection, self.window.id, 0, 0]))
        screen.root.send_event(note, event_mask=X.StructureNotifyMask)
        self.display.sync()

    def _atom(self, name):
        return self.display.intern_atom(name)

    def icons(self):
        """The windows taken in so far, in place."""
        while self.display.pending_events():
            seen = self.display.next_event()
            if seen.type == X.ClientMessage and seen.client_type == self._atom("_NET_SYSTEM_TRAY_OPCODE"):
                self._dock(self.display.create_resource_object("window", seen.data[1][2]))
        return self.window.query_tree().children

    def _dock(self, icon):
        icon.reparent(self.window, 0, 0)
        icon.configure(width=self.SIDE, height=self.SIDE)
        icon.map()
        note = event.ClientMessage(window=icon, client_type=self._atom("_XEMBED"),
                                   data=(32, [X.CurrentTime, 0, 0, self.window.id, 0]))
        icon.send_event(note)
        self.display.sync()

    def end(self):
        """As a panel that crashes."""
        self.display.close()


class NotifierHost:
    """A panel that shows what is told of on the session bus."""

    WATCHER = "org.kde.StatusNotifierWatcher"
    XML = f"""<node><interface name='{WATCHER}'>
        <method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
        <method name='RegisterStatusNotifierHost'><arg type='s' direction='in'/></method>
        <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
        <property name='RegisteredStatusNotifierItems' type='as' access='read'/>
        <property name='ProtocolVersion' type='i' access='read'/>
        <signal name='StatusNotifierHostRegistered'/>
        </interface></node>"""

    def __init__(self, session, is_registered=True):
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            session.environment["DBUS_SESSION_BUS_ADDRESS"],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        self.items = []
        self.is_registered = is_registered
        interface = Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces[0]
        self.bus.register_object("/StatusNotifierWatcher", interface, self._call, self._get, None)
        Gio.bus_own_name_on_connection(self.bus, self.WATCHER, Gio.BusNameOwnerFlags.NONE, None, None)

    def register(self):
        self.is_registered = True
        self.bus.emit_signal(None, "/StatusNotifierWatcher", self.WATCHER, "StatusNotifierHostRegistered", None)

    def _call(self, bus, sender, path, interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            self.items.append(sender)
        invocation.return_value(None)

    def _get(self, bus, sender, path, interface, name):
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", self.is_registered),
                "RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def item(self):
        """The bus name of the one that is told of, if any."""
        while GLib.MainContext.default().iteration(False):
            pass
        return self.items[-1] if self.items else None

    def call(self, path, interface, method, signature, *arguments):
        variant = GLib.Variant(signature, arguments)
        return self.bus.call_sync(self.item(), path, interface, method, variant, None, 0, 5000, None).unpack()

    def property(self, name):
        return self.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", "(ss)",
                         "org.kde.StatusNotifierItem", name)[0]

    def entries(self):
        """The menu's entries: number and properties."""
        layout = self.call(self.property("Menu"), "com.canonical.dbusmenu", "GetLayout", "(iias)", 0, -1, [])[1]
        return [(number, properties) for number, properties, _ in layout[2]]

    def labels(self):
        return [properties.get("label") for _, properties in self.entries() if properties.get("type") != "separator"]

    def choose(self, label):
        number = next(number for number, properties in self.entries() if properties.get("label") == label)
        self.call(self.property("Menu"), "com.canonical.dbusmenu", "Event", "(isvu)", number, "clicked",
                  GLib.Variant("s", ""), 0)

    def end(self):
        self.bus.close_sync(None)


class StatusItemTest(Menus, SessionTest):
    def docked(self, tray):
        """The place of the icon in a tray, once it is painted there."""
        eventually(tray.icons, "the icon is in the tray")
        x, y, _, _ = self.session.geometry(tray.window)
        eventually(lambda: len(set(self.picture_of(tray).getdata())) > 1, "it is painted")
        return x, y

    def picture_of(self, tray):
        x, y, _, _ = self.session.geometry(tray.window)
        return self.session.picture(x, y, tray.SIDE, tray.SIDE)

    def test_in_a_tray_that_comes_late_and_once_more(self):
        session = self.session
        program = session.start_bar()
        for color in ((250, 240, 230), (20, 10, 30)):
            tray = Tray(session, color)
            x, y = self.docked(tray)
            picture = self.picture_of(tray)
            self.assertEqual(picture.getpixel((16, 20)), color, "the filled third, in the tray's colour")
            self.assertEqual(picture.getpixel((16, 11)), Tray.BACKGROUND, "and around it the tray's own")
            for button, entry in ((1, "hidden"), (3, "shown")):
                session.click((x + 16, y + 16), button)
                eventually(lambda: self.menus() and self.has_keyboard(), "a click opens the menu")
                session.key("Down", "Return")
                eventually(lambda: bool(session.bars()) == (entry == "shown"), f"the bar is {entry}")
            tray.end()
        tray = Tray(session)
        self.docked(tray)
        self.assertEqual(self.picture_of(tray).getpixel((16, 20)), (242, 243, 245), "light where the tray says nothing")
        session.write_settings(showMenuBarIcon=False)
        eventually(lambda: not tray.icons(), "the icon goes with the setting")
        session.write_settings(showMenuBarIcon=True)
        x, y = self.docked(tray)
        session.click((x + 16, y + 16))
        eventually(lambda: self.menus(), "the menu is open")
        session.key("Super+q")
        self.assertEqual(program.wait(10), 0)

    def test_in_a_tray_of_another_maker(self):
        session = self.session
        session.start_bar()
        for time in ("first", "again"):
            trayer = session.start("trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                                   "--heighttype", "pixel", "--height", "32")
            for entry in ("hidden", "shown"):
                place = eventually(lambda: self.icon_at_rest("trayer"), f"it takes the icon in, {time}")
                eventually(lambda: len(set(session.picture(*place).getdata())) > 1, "the icon is painted")
                session.click((place[0] + place[2] // 2, place[1] + place[3] // 2))
                eventually(lambda: self.menus() and self.has_keyboard(), "a click opens the menu")
                session.key("Down", "Return")
                eventually(lambda: bool(session.bars()) == (entry == "shown"), f"the bar is {entry}")
            trayer.terminate()
            trayer.wait(5)

    def icon_at_rest(self, wm_class):
        """A tray that has just started lays itself out in several steps."""
        place = self.icon_in(wm_class)
        sleep(0.5)
        return place if place == self.icon_in(wm_class) else None

    def icon_in(self, wm_class):
        """Where our icon lies in another program's window; None where there is none of some size."""
        def icons(window, is_inside):
            name = self.session.class_of(window)
            if is_inside and "vantry" in name:
                yield window
            for child in window.query_tree().children:
                yield from icons(child, is_inside or wm_class in name)

        try:
            places = [self.session.geometry(icon) for icon in icons(self.session.root, False)]
        except error.BadWindow:  # one that has just gone
            return None
        return next((place for place in places if min(place[2:]) > 8), None)

    def test_with_a_panel_on_the_bus_that_comes_late_and_once_more(self):
        session = self.session
        program = session.start_bar()
        host = NotifierHost(session, is_registered=False)
        for time in ("first", "again"):
            eventually(host.item if time == "again" else lambda: host.item() or host.register(), f"it is told of, {time}")
            self.assertEqual(host.property("ToolTip")[2], "Vantry")
            self.assertIn(22, [width for width, _, _ in host.property("IconPixmap")])
            self.assertEqual(host.labels(), ["Hide Taskbar", "Hide this menu bar icon", "Quit Vantry"])
            self.assertEqual([set(properties["shortcut"][0]) for _, properties in host.entries() if "shortcut" in properties],
                             [{"Alt", "Super", "B"}, {"Super", "Q"}])
            for before, after in (("Hide Taskbar", "Show Taskbar"), ("Show Taskbar", "Hide Taskbar")):
                host.choose(before)
                eventually(lambda: host.item() and host.labels()[0] == after, "the entry says the other")
                eventually(lambda: bool(session.bars()) == (after == "Hide Taskbar"), "the bar follows")
            session.move(400, 300)
            host.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", "(ii)", 400, 300)
            eventually(lambda: self.menus() and self.has_keyboard(), "a click opens the menu")
            session.key("Escape")
            eventually(lambda: not self.menus(), "and Escape closes it")
            if time == "first":
                host.end()
                host = NotifierHost(session)
        host.choose("Hide this menu bar icon")
        eventually(lambda: host.item() and session.active() in
                   [window.id for window in session.clients() if window.id not in {bar.id for bar in session.bars()}], "it asks")
        session.key("Return")
        eventually(lambda: host.item() and session.settings().get("showMenuBarIcon") is False, "it is hidden for good")
        self.assertIsNone(program.poll())


if __name__ == "__main__":
    unittest.main()
