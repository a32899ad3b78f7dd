"""Real programs on the bar: names, icons, filters, badges."""

import os
import unittest

from PIL import Image, ImageChops, ImageStat
from parts import Counter
from session import Session, SessionTest, eventually


def difference(a, b):
    """Mean difference of two pictures a channel, from 0 to 255."""
    return sum(ImageStat.Stat(ImageChops.difference(a, b)).mean) / 3


class ProgramsTest(unittest.TestCase):
    def test_programs_of_three_toolkits_get_buttons_with_their_own_names_and_icons(self):
        names = ["XTerm", "L3afpad", "FeatherPad"]
        with Session(has_shipped_icons=True) as session:
            session.start_bar()
            session.xterm()
            session.open("L3afpad", "l3afpad")
            session.open("FeatherPad", "featherpad", "--standalone", env={"QT_QPA_PLATFORM": "xcb"})
            for name in names:
                counted = session.run(env={"BAR_COUNT_APP": name}).stderr
                self.assertRegex(counted, name + r" pid=\d+: 1 counted window")

            bar = session.bar()
            session.move(900, 400)
            look = lambda name: session.icon_picture(bar, bar.button(names.index(name))[0])
            # The icon as its package ships it, scaled by other code than ours, on the bar's own colour.
            shipped = Image.open("/usr/share/icons/hicolor/128x128/apps/l3afpad.png").convert("RGBA")
            expected = Image.new("RGBA", (bar.icon, bar.icon), session.picture(1900, 1050, 1, 1).getpixel((0, 0)))
            expected.alpha_composite(shipped.resize((bar.icon, bar.icon), Image.LANCZOS))
            eventually(lambda: difference(look("L3afpad"), expected.convert("RGB")) < 6, "its own icon is painted")
            pictures = {name: look(name) for name in names}
            for one, other in (("XTerm", "L3afpad"), ("XTerm", "FeatherPad"), ("L3afpad", "FeatherPad")):
                self.assertGreater(difference(pictures[one], pictures[other]), 12, f"{one} and {other} look alike")


class FollowingTest(SessionTest):
    def test_filters_the_trash_and_badges_follow_what_others_do(self):
        session = self.session
        session.write_settings(showFinderButton=False)
        session.start_bar()
        editor = session.open("L3afpad", "l3afpad")
        session.xterm("terminal")
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "both have a button")
        session.ask(editor, "_NET_WM_DESKTOP", 1, 2)
        eventually(lambda: session.property(editor, "_NET_WM_DESKTOP")[0] == 1, "the editor is on another desktop")
        session.write_settings(currentSpaceOnly=True)
        eventually(lambda: session.names() == ["XTerm"], "just this desktop's programs")
        session.ask(session.root, "_NET_CURRENT_DESKTOP", 1)
        eventually(lambda: session.names() == ["L3afpad"], "the other desktop's program")
        session.write_settings(currentSpaceOnly=False)
        eventually(lambda: session.names() == ["L3afpad", "XTerm"], "all again")

        session.move(900, 300)
        bar = session.bar()
        tile = lambda: session.picture(bar.trash(2)[0] - 16, bar.y + 12, 32, 36)
        empty = eventually(lambda: len(set(tile().getdata())) > 8 and tile(), "the tile is painted")
        thrown = os.path.join(session.trash_folder(), "thrown away")
        with open(thrown, "w", encoding="utf-8"):
            pass
        eventually(lambda: difference(tile(), empty) > 0.5, "the tile shows a full Trash", 4)
        os.remove(thrown)
        eventually(lambda: difference(tile(), empty) < 0.1, "and an empty one again", 4)

        def is_red():
            red, green, blue = ImageStat.Stat(session.picture(bar.button(0)[0] + 8, bar.y + 8, 10, 10)).mean
            return red > 120 and red > 2 * green and red > 2 * blue

        self.assertFalse(is_red())
        counter = Counter(session, "l3afpad.desktop")

        def tell_and_look():
            counter.tell(7)
            return is_red()

        eventually(tell_and_look, "the badge is painted")
        counter.end()
        eventually(lambda: not is_red(), "the badge goes with its sender")


if __name__ == "__main__":
    unittest.main(verbosity=2)
