"""A portal of settings that says how programs should look, until it is ended.

usage: python3 portal.py dark|light
"""

import sys

from gi.repository import Gio, GLib

DESCRIPTION = """<node><interface name="org.freedesktop.portal.Settings">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>"""
SCHEMES = {"dark": 1, "light": 2}


def answer(_bus, _sender, _path, _interface, _method, parameters, call):
    _, key = parameters.unpack()
    if key == "color-scheme":
        # This method wraps its answer twice.
        call.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", SCHEMES[sys.argv[1]])),)))
    else:
        call.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no")


def serve(bus, _name):
    interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
    bus.register_object("/org/freedesktop/portal/desktop", interface, answer, None, None)


Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE, serve, None, None)
GLib.MainLoop().run()
