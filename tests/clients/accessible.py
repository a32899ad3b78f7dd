"""A program with a window and something to show on the accessibility bus.

usage: python3 accessible.py player     a player: texts, a slider, buttons
       python3 accessible.py endless    a tree in which each element holds its own root, sixty times
"""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gio, GLib, Gtk  # noqa: E402

ROOT = "/org/a11y/atspi/accessible/root"
DESCRIPTION = """<node><interface name="org.a11y.atspi.Accessible">
<method name="GetChildren"><arg type="a(so)" direction="out"/></method>
<method name="GetRole"><arg type="u" direction="out"/></method></interface></node>"""
PANEL = 39


def show_player():
    box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL, spacing=8)
    position = Gtk.Scale.new_with_range(Gtk.Orientation.HORIZONTAL, 0, 240, 1)
    position.set_value(93)
    for widget in (Gtk.Label(label="Lanterns on the River"), position, Gtk.Button(label="Previous"),
                   Gtk.ToggleButton(label="Pause"), Gtk.Button(label="Delete")):
        box.add(widget)
    window = Gtk.Window(title="Player", default_width=400, default_height=300)
    window.set_wmclass("client", "Client")
    window.add(box)
    window.show_all()
    Gtk.main()


def show_endless():
    from Xlib import X, display

    server = display.Display()
    screen = server.screen()
    window = screen.root.create_window(100, 100, 400, 300, 0, screen.root_depth, X.InputOutput, X.CopyFromParent,
                                       background_pixel=0xC0C0C0)
    window.set_wm_class("client", "Client")
    window.set_wm_name("Endless")
    window.map()
    server.flush()

    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, 5000).unpack()
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    bus = Gio.DBusConnection.new_for_address_sync(address[0], flags)
    me = (bus.get_unique_name(), ROOT)

    def answer(_bus, _sender, _path, _interface, method, _parameters, call):
        if method == "GetRole":
            call.return_value(GLib.Variant("(u)", (PANEL,)))
        else:
            call.return_value(GLib.Variant("(a(so))", ([me] * 60,)))

    bus.register_object(ROOT, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], answer, None, None)
    bus.call_sync("org.a11y.atspi.Registry", ROOT, "org.a11y.atspi.Socket", "Embed", GLib.Variant("((so))", (me,)), None, 0,
                  5000)
    GLib.MainLoop().run()


{"player": show_player, "endless": show_endless}[sys.argv[1]]()
