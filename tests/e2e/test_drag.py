"""Something dragged from another program over the bar, by the protocol that programs drag by."""

import os
import unittest

from session import SessionTest, eventually
from Xlib import X, display
from Xlib.protocol import event


class Source:
    """The source's side of a drag. What is dragged is told by type."""

    VERSION = 5

    def __init__(self, session, **types):
        self.display = display.Display(session.environment["DISPLAY"])
        self.types = {self.display.intern_atom(name): data for name, data in types.items()}
        root = self.display.screen().root
        self.window = root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.window.set_selection_owner(self.display.intern_atom("XdndSelection"), X.CurrentTime)
        self.target = self.display.create_resource_object("window", session.bars()[0].id)
        self.tell("XdndEnter", self.VERSION << 24, *self.types)

    def tell(self, message, *data):
        values = ([self.window.id, *data] + [0] * 5)[:5]
        self.target.send_event(event.ClientMessage(
            window=self.target, client_type=self.display.intern_atom(message), data=(32, values)))
        self.display.sync()

    def move(self, point):
        """Gives whether it could be dropped there."""
        x, y = map(int, point)
        self.tell("XdndPosition", 0, x << 16 | y, X.CurrentTime, self.display.intern_atom("XdndActionMove"))
        return bool(self.answer("XdndStatus")[1] & 1)

    def drop(self):
        """Gives whether it was taken."""
        self.tell("XdndDrop", 0, X.CurrentTime)
        return bool(self.answer("XdndFinished")[1] & 1)

    def answer(self, message):
        return eventually(lambda: self.next(self.display.intern_atom(message)), f"{message} comes")

    def next(self, message):
        while self.display.pending_events():
            note = self.display.next_event()
            if note.type == X.SelectionRequest:
                self.hand_over(note)
            if note.type == X.ClientMessage and note.client_type == message:
                return note.data[1]
        return None

    def hand_over(self, request):
        data = self.types.get(request.target)
        if data is not None:
            request.requestor.change_property(request.property, request.target, 8, data)
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=X.NONE if data is None else request.property))
        self.display.flush()


class DragTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.write_settings(showFinderButton=False)
        self.session.start_bar()

    def test_files_dropped_on_the_trash_go_there(self):
        session = self.session
        path = os.path.join(session.environment["HOME"], "a letter.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("text")
        bar = session.bar()
        source = Source(session, **{"text/uri-list": b"file://" + path.replace(" ", "%20").encode() + b"\r\n"})
        self.assertFalse(source.move(bar.middle("search")))
        self.assertTrue(source.move(bar.trash(0)))
        self.assertTrue(source.drop())
        eventually(lambda: os.listdir(session.trash_folder()) == ["a letter.txt"], "it is in the Trash")
        self.assertFalse(os.path.exists(path))


if __name__ == "__main__":
    unittest.main(verbosity=2)
