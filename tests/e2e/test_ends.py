"""How the program starts beside another one, and how it ends."""

import os
import signal
import subprocess
import time
import unittest

from session import PROGRAM, Session, World, eventually


class StartTest(unittest.TestCase):
    def start_two(self, world, env, stays_well):
        """Starts two at the same moment, sees one leave it to the other, and ends that one."""
        two = [subprocess.Popen([PROGRAM], env={**world.environment, **env}, stderr=subprocess.DEVNULL) for _ in range(2)]
        try:
            eventually(lambda: any(process.poll() is not None for process in two), "one leaves")
            left, stays = sorted(two, key=lambda process: process.poll() is None)
            self.assertEqual(left.poll(), 0)
            stays_well()
            self.assertIsNone(stays.poll())
        finally:
            for process in two:
                process.kill()
                process.wait()

    def test_of_two_that_start_at_the_same_moment_one_stays(self):
        with Session() as session:
            for _ in range(25):
                self.start_two(session, {}, lambda: eventually(lambda: len(session.bars()) == 1, "its bar stands"))
                eventually(lambda: not session.bars(), "and goes with it")

    def test_of_two_on_one_embedded_desktop_one_stays(self):
        with World() as world:
            for _ in range(5):
                self.start_two(world, {"QT_QPA_PLATFORM": "offscreen"}, lambda: time.sleep(0.3))


class EndTest(unittest.TestCase):
    def test_a_server_that_goes_away_ends_the_program_with_a_word(self):
        ends = {"killed": lambda session: session.server.kill(), "ended": lambda session: session.server.terminate(),
                "the bar's client closed": lambda session: (session.bars()[0].kill_client(), session.display.flush())}
        for name, end in ends.items():
            with self.subTest(name), Session() as session:
                program = session.start_bar()
                end(session)
                self.assertEqual(program.wait(10), 0)
                self.assertIn("vantry: the X server closed the connection\n", session.log())

    def test_signals_end_it_in_order_unless_switched_off_and_it_outlives_the_reader_of_its_log(self):
        with Session() as session:
            for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
                program = session.start_bar()
                program.send_signal(number)
                self.assertEqual(program.wait(10), 0, number)
            program = session.start("nohup", PROGRAM)
            eventually(session.bars, "the bar is back")
            program.send_signal(signal.SIGHUP)
            session.xterm()
            eventually(lambda: session.names() == ["XTerm"], "it goes on")
            self.assertIsNone(program.poll())
            program.kill()
            program.wait()

            read, write = os.pipe()
            program = subprocess.Popen([PROGRAM], env={**session.environment, "BAR_DEBUG": "1"}, stderr=write)
            session.processes.append(program)
            os.close(write)
            eventually(lambda: b"launched" in os.read(read, 65536), "it logs")
            os.close(read)
            session.xterm()
            eventually(lambda: session.names() == ["XTerm"] * 2, "it goes on without the reader of its log")
            self.assertIsNone(program.poll())


if __name__ == "__main__":
    unittest.main(verbosity=2)
