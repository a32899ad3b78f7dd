"""The bar as screen readers and test tools have it: through the accessibility bus alone."""

import time
import time
import unittest

from parts import Counter, Panels, Program, SearchBox
from reader import Reader, at, children, extents, press, soon, states, text
from session import Session, eventually

LEADING = {"Apps launcher": "launcher", "Search": "search", "Show Desktop": "showDesktop"}


class AccessibilityTest(Panels, SearchBox, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = cls.enterClassContext(Session())
        cls.reader = Reader(cls.session)

    def setUp(self):
        session = self.session
        session.restart_bar()
        self.terminal = session.xterm("Quarterly figures")
        self.editor = session.open("L3afpad", "l3afpad")
        self.addCleanup(self.close, "XTerm", "L3afpad")
        self.has_tiles("XTerm", "L3afpad")
        soon(lambda: self.pressed() == ["L3afpad"], "the editor is in front")

    def close(self, *classes):
        for name in classes:
            for window in self.session.windows_of(name):
                self.session.ask(window, "_NET_CLOSE_WINDOW", 0, 2)
            eventually(lambda name=name: not self.session.windows_of(name), name + " has gone")

    def tiles(self):
        return [tile for bar in self.reader.find("tool bar") for tile in children(bar)
                if tile.get_role_name() == "push button"]

    def tile(self, name):
        return soon(lambda: next((tile for tile in self.tiles() if tile.get_name() == name), None), name)

    def pressed(self):
        return [tile.get_name() for tile in self.tiles() if "pressed" in states(tile)]

    def has_tiles(self, *buttons):
        names = [*LEADING, *buttons, "Trash"]
        soon(lambda: [tile.get_name() for tile in self.tiles()] == names, f"the tiles are {names}")

    def test_each_tile_is_where_it_is_painted_at_either_edge_and_any_scale(self):
        session = self.session
        self.addCleanup(session.set_scale, 1)
        old = None
        self.addCleanup(session.write_settings, barEdge="bottom")
        for scale, edge in ((1, "bottom"), (2, "top"), (1.5, "bottom")):
            with self.subTest(scale=scale, edge=edge):
                session.set_scale(scale)
                session.write_settings(barEdge=edge)
                height = int(63 * scale + 0.5)
                place = (0, 0 if edge == "top" else 1080 - height, 1920, height)
                # The bar is made anew for another scale.
                eventually(lambda: [session.geometry(bar) for bar in session.bars() if bar.id != old] == [place], "it")
                old, bar = session.bars()[0].id, session.bar()
                measured = {name: bar.places[component] for name, component in LEADING.items()}
                measured.update(XTerm=(bar.apps, bar.item), L3afpad=(bar.apps + bar.item, bar.item))
                for name, (x, width) in measured.items():
                    left, right = int(x * scale + 0.5), int((x + width) * scale + 0.5)
                    soon(lambda: extents(self.tile(name))[::2] == (left, right - left), name + "'s extents")
                    if name != "Search":
                        self.assertEqual(extents(self.tile(name))[1::2], place[1::2], name)
                for name in ("XTerm", "L3afpad"):
                    eventually(lambda: self.spread(name, place), name + " is painted")
                    x, y, width, height = extents(self.tile(name))
                    left, right = self.spread(name, place)
                    self.assertAlmostEqual((left + right) / 2, x + width / 2, delta=1)
                    self.assertTrue(x < left < right < x + width)
                    found = at(self.reader.find("tool bar")[0], x + width // 2, y + height // 2)
                    self.assertEqual(found.get_name(), name)

    def spread(self, name, place):
        """From where to where the program's icon is painted along the middle of the bar."""
        x, y, width, height = place
        row = self.session.picture(x, y + height // 2, width, 1)
        painted = [at for at in range(width)
                   if all(abs(a - b) < 8 for a, b in zip(row.getpixel((at, 0)), self.session.colors[name]))]
        return painted and (painted[0], painted[-1] + 1)

    def take_a_moment(self):
        """No user is as quick as the test: some managers are still handing the keyboard round."""
        time.sleep(0.3)

    def test_a_press_does_what_a_click_does(self):
        session = self.session
        held = self.tile("XTerm")
        press(held)
        eventually(lambda: session.active() == self.terminal.id, "the terminal comes to the front")
        soon(lambda: self.pressed() == ["XTerm"], "and its tile is the one that is pressed in")
        press(self.tile("L3afpad"))
        eventually(lambda: session.active() == self.editor.id, "the editor comes to the front")
        self.take_a_moment()
        press(self.tile("Search"))
        eventually(self.bar_has_keyboard, "the search box has the keyboard")
        session.type("quart")
        soon(lambda: [text(field) for field in self.reader.find("text")] == ["quart"], "all that was typed has come")
        row = soon(lambda: next(iter(self.reader.find("list item")), None), "the window is found")
        self.assertEqual((row.get_name(), row.get_description()), ("Quarterly figures", "XTerm"))
        self.assertLess({"selected", "showing"}, states(row))
        self.assertEqual(extents(row)[0], self.panel()[0])
        self.take_a_moment()
        press(row)
        eventually(lambda: session.active() == self.terminal.id, "the terminal comes to the front")

        session.move(*session.bar().button(1))
        self.preview()
        card = soon(lambda: next((card for card in self.reader.find("push button")
                                        if card.get_name() == "(Untitled)"), None), "the editor's window has a card")
        press(card)
        eventually(lambda: session.active() == self.editor.id, "the editor comes to the front")
        session.move(900, 300)

        press(self.tile("Show Desktop"))
        eventually(lambda: all(map(session.is_minimised, (self.editor, self.terminal))), "all is cleared")
        soon(lambda: "Show Desktop" in self.pressed(), "the desktop is being shown")
        soon(lambda: held.get_description() == "1 window, hidden", "the terminal's tile says so too")
        # A program that doesn't hide is asked again for so long.
        time.sleep(0.7)
        press(self.tile("Show Desktop"))
        eventually(lambda: not any(map(session.is_minimised, (self.editor, self.terminal))), "all is back")
        soon(lambda: "Show Desktop" not in self.pressed(), "the desktop isn't being shown")
        self.assertIs(self.tile("XTerm"), held, "a tile stays what it is while it is there")

    def test_a_reader_hears_of_what_changes_and_of_nothing_else(self):
        session, reader = self.session, self.reader
        held = self.tile("XTerm")
        painter = Program(session)
        first = painter.open("first", 0xC828D2, 300, 200)
        self.has_tiles("XTerm", "L3afpad", "Painter")
        second = painter.open("second", 0xC828D2, 500, 300)
        counter = Counter(session, "Painter.desktop")
        says = lambda text: soon(lambda: self.tile("Painter").get_description() == text, text)
        says("2 windows")
        soon(lambda: counter.tell(7) or self.tile("Painter").get_description() == "2 windows, 7 notifications", "7")
        soon(lambda: counter.tell(1) or self.tile("Painter").get_description() == "2 windows, 1 notification", "1")
        eventually(lambda: ("property-change:accessible-description", "Painter") in reader.listen(), "told")
        self.assertIn("children-changed:add", [kind for kind, _ in reader.heard])

        reader.listen(1)
        reader.heard.clear()
        self.assertEqual(reader.listen(3.5), [], "refreshes that find everything as it was")

        painter.close(second)
        says("1 window, 1 notification")
        painter.close(first)
        self.has_tiles("XTerm", "L3afpad")
        eventually(lambda: "children-changed:remove" in [kind for kind, _ in reader.listen()], "told")
        counter.end()

        self.addCleanup(session.write_settings, barVisible=True)
        session.write_settings(barVisible=False)
        soon(lambda: all("showing" not in states(tile) for tile in self.tiles()), "a hidden bar shows none")
        eventually(lambda: ("state-changed:showing", "XTerm") in reader.listen(), "told")
        self.assertEqual(len(self.tiles()), 6)
        session.write_settings(barVisible=True)
        soon(lambda: all("showing" in states(tile) for tile in self.tiles()), "the bar shows them again")
        self.assertIs(self.tile("XTerm"), held, "a tile stays what it is while it is there")


if __name__ == "__main__":
    unittest.main(verbosity=2)
