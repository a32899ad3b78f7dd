"""A file manager that writes what it is asked to show to a file, a line each.

usage: python3 file_manager.py FILE
"""

import sys

from gi.repository import Gio, GLib

DESCRIPTION = """<node><interface name="org.freedesktop.FileManager1">
<method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>"""


def answer(_bus, _sender, _path, _interface, _method, parameters, call):
    with open(sys.argv[1], "a", encoding="utf-8") as file:
        file.write("".join(url + "\n" for url in parameters.unpack()[0]))
    call.return_value(None)


def serve(bus, _name):
    interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
    bus.register_object("/org/freedesktop/FileManager1", interface, answer, None, None)


Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.FileManager1", Gio.BusNameOwnerFlags.NONE, serve, None, None)
GLib.MainLoop().run()
