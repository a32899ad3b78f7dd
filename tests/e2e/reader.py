"""What a screen reader has of the program: its elements on the accessibility bus."""

import os
import time

import dbus
import gi
from session import eventually

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def soon(condition, what):
    """As `eventually`, of things that may go while they are looked at."""
    def look():
        try:
            return condition()
        except GLib.Error:
            return None

    return eventually(look, what)


class Reader:
    """What a screen reader has of the bar. Its library knows one bus for the life of a process."""

    def __init__(self, session):
        # A window manager of the right toolkit may have started one by itself, switched off.
        session.start("/usr/libexec/at-spi-bus-launcher")
        bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        eventually(lambda: bus.name_has_owner("org.a11y.Bus"), "there is an accessibility bus")
        switch = dbus.Interface(bus.get_object("org.a11y.Bus", "/org/a11y/bus"), "org.freedesktop.DBus.Properties")
        switch.Set("org.a11y.Status", "IsEnabled", True)
        bus.close()
        os.environ.update({name: session.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        Atspi.init()
        self.heard = []
        self.listener = Atspi.EventListener.new(self._hear)
        for kind in ("children-changed", "state-changed", "property-change", "bounds-changed"):
            self.listener.register("object:" + kind)

    def _hear(self, event):
        try:
            program = event.source.get_application()
            if program and program.get_name() == "vantry":
                self.heard.append((event.type.removeprefix("object:"), event.source.get_name()))
        except GLib.Error:  # it has gone meanwhile
            pass

    def listen(self, seconds=0.0):
        """All that is told in that time, and was before."""
        end = time.monotonic() + seconds
        while GLib.MainContext.default().iteration(False) or time.monotonic() < end:
            pass
        return self.heard

    def find(self, role):
        """The program's elements of that role, in the order that the tree has them."""
        return [found for program in children(Atspi.get_desktop(0)) if program.get_name() == "vantry"
                for found in self._below(program, role)]

    def _below(self, element, role):
        if element.get_role_name() == role:
            yield element
        for child in children(element):
            yield from self._below(child, role)


def children(element):
    return list(filter(None, (element.get_child_at_index(index) for index in range(element.get_child_count()))))


def states(element):
    return {state.value_nick for state in element.get_state_set().get_states()}


def extents(element):
    rect = element.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    return rect.x, rect.y, rect.width, rect.height


def at(element, x, y):
    """What of it lies at a point of the screen."""
    return element.get_component_iface().get_accessible_at_point(x, y, Atspi.CoordType.SCREEN)


def text(field):
    return Atspi.Text.get_text(field, 0, -1)


def press(element):
    actions = element.get_action_iface()
    assert [actions.get_action_name(index) for index in range(actions.get_n_actions())] == ["Press"]
    assert actions.do_action(0)
