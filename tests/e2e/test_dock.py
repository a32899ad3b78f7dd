"""The Dock behind the bar and what gives it back, with no panel on the desktop: agents and the login item as a session's
own tools read and run them, tools and files that fail."""

import os
import plistlib
import re
import resource
import shlex
import shutil
import signal
import stat
import subprocess
import time
import unittest

from session import PROGRAM, SessionTest, eventually

OWN = "com.merrowen.vantry"
REPAIR = OWN + ".repair"
FOLDER = os.path.dirname(os.path.realpath(PROGRAM))
PROGRAMS = ("vantry", "vantry-defaults", "vantry-killall", "vantry-launchctl", "vantry-tools.bash")


class Dock(SessionTest):
    def setUp(self):
        super().setUp()
        self.config = self.session.environment["XDG_CONFIG_HOME"]
        self.support = os.path.join(self.session.environment["XDG_DATA_HOME"], "Vantry")
        self.flag = os.path.join(self.support, "dock-dirty.flag")

    def dock(self):
        with open(self.session.preferences("com.apple.dock"), "rb") as file:
            return plistlib.load(file)

    def is_behind(self):
        return self.dock().get("tilesize") == 1 and self.dock().get("autohide") is True

    def entry(self, name):
        return os.path.join(self.config, "autostart", name + ".desktop")

    def command(self, name):
        """What a session runs of an autostart entry."""
        with open(self.entry(name), encoding="utf-8") as file:
            line = re.search("^Exec=(.*)$", file.read(), re.M).group(1)
        return [word.replace("%%", "%") for word in shlex.split(line.replace("\\\\", "\\"))]

    def run_agent(self):
        return subprocess.run(self.command(REPAIR), env=self.session.environment, capture_output=True, text=True, timeout=20)

    def crash(self, process):
        process.send_signal(signal.SIGKILL)
        process.wait(5)
        self.session.processes.remove(process)

    def programs_in(self, name):
        """The program and its tools in another place."""
        folder = os.path.join(self.session.folder, name)
        os.makedirs(folder)
        for program in PROGRAMS:
            shutil.copy2(os.path.join(FOLDER, program), folder)
        return folder

    def start_from(self, folder, **more):
        """The process and how long it took to its first painting."""
        log = os.path.join(self.session.folder, os.path.basename(folder) + ".log")
        began = time.monotonic()
        process = self.session.start(os.path.join(folder, "vantry"), env={"BAR_DEBUG": "1"}, log=log, **more)
        self.session.log_file = log
        eventually(self.session.is_bar_painted, "the bar is on the screen", 20)
        return process, time.monotonic() - began

    def test_the_agent_gives_the_dock_back_after_a_crash(self):
        self.session.write_settings(manageDock=False)
        process = self.session.start_bar()
        before = self.dock()
        process.terminate()
        process.wait(5)
        self.session.write_settings(manageDock=True)
        process = self.session.restart_bar()
        eventually(self.is_behind, "the Dock is behind the bar")
        subprocess.run(["desktop-file-validate", self.entry(REPAIR)], check=True)
        agents = os.path.join(self.config, "vantry/LaunchAgents", REPAIR + ".plist")
        with open(agents, "rb") as file:
            self.assertEqual(plistlib.load(file)["ProgramArguments"], ["/bin/bash", self.support + "/repair.sh"])

        self.crash(process)
        self.assertTrue(os.path.exists(self.flag))
        agent = self.run_agent()
        self.assertEqual(agent.returncode, 0, agent.stderr)
        self.assertEqual(self.dock(), before, os.listdir(self.support))
        self.assertFalse(os.path.exists(self.flag))
        # Without a flag it does nothing.
        self.assertEqual(self.run_agent().returncode, 0)
        self.assertEqual(self.dock(), before)

        # At a login beside the program, in either order, the Dock ends behind the bar and the flag up.
        self.crash(self.session.start_bar())
        self.run_agent()
        process = self.session.start_bar()
        eventually(lambda: self.is_behind() and os.path.exists(self.flag), "behind the bar, the agent first")
        self.run_agent()
        self.assertFalse(os.path.exists(self.flag))
        eventually(lambda: self.is_behind() and os.path.exists(self.flag), "behind the bar again, the agent last")

        # An orderly end gives all back; the entry of an agent that the user has switched off stays so.
        process.terminate()
        process.wait(5)
        self.assertEqual((process.returncode, self.dock(), os.path.exists(self.flag)), (0, before, False))
        with open(self.entry(REPAIR), "a", encoding="utf-8") as file:
            file.write("Hidden=true\n")
        self.session.start_bar()
        with open(self.entry(REPAIR), encoding="utf-8") as file:
            self.assertIn("Hidden=true", file.read())

    def test_a_moved_program_is_started_at_login_from_where_it_is(self):
        first, second = self.programs_in("a place"), self.programs_in('an%other "one"')
        self.session.write_settings(loginItemBundlePath=os.path.join(first, "vantry"))
        for folder in (first, second):
            process, _ = self.start_from(folder)
            subprocess.run(["desktop-file-validate", self.entry(OWN)], check=True)
            self.assertEqual(self.command(OWN), [os.path.join(folder, "vantry")])
            self.assertEqual(self.session.settings()["loginItemBundlePath"], os.path.join(folder, "vantry"))
            process.terminate()
            process.wait(5)
            self.session.processes.remove(process)
        # The agent follows its tools, a moment after the start.
        shutil.rmtree(first)
        self.start_from(second)
        eventually(lambda: self.command(REPAIR)[0] == os.path.join(second, "vantry-launchctl"), "the agent knows the tools")
        launchctl = self.command(REPAIR)[0]

        def run(*arguments):
            return subprocess.run([launchctl, *arguments], env=self.session.environment, capture_output=True, text=True)

        agents = os.path.join(self.config, "vantry/LaunchAgents", REPAIR + ".plist")
        self.assertEqual(run("list").stdout, REPAIR + "\n")
        self.assertEqual(run("bootstrap", "gui/0", agents).returncode, 37)
        self.assertEqual(run("bootout", "gui/0/" + REPAIR).returncode, 0)
        again = run("bootout", "gui/0/" + REPAIR)
        self.assertEqual((again.returncode, again.stdout), (3, ""))
        self.assertIn("no agent", again.stderr)
        self.assertEqual(run("bootstrap", "gui/0", agents).returncode, 0)
        self.assertEqual(run("start", self.flag).returncode, 5)

    def test_tools_and_files_that_fail_hold_nothing_up(self):
        def without(tool):
            def spoil(folder):
                os.remove(os.path.join(folder, tool))
            return spoil

        def hanging(*tools):
            def spoil(folder):
                for tool in tools:
                    os.remove(os.path.join(folder, tool))
                    with open(os.path.join(folder, tool), "w", encoding="utf-8") as file:
                        file.write("#!/bin/sh\nexec sleep 60\n")
                    os.chmod(os.path.join(folder, tool), stat.S_IRWXU)
            return spoil

        def in_place_of(path):
            def spoil(_):
                shutil.rmtree(path, ignore_errors=True)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as file:
                    file.write("in the way")
            return spoil

        def damaged_backup(_):
            os.makedirs(self.support)
            for name, text in (("dock-backup.plist", "<plist><dict>"), ("dock-dirty.flag", "3999999\n")):
                with open(os.path.join(self.support, name), "w", encoding="utf-8") as file:
                    file.write(text)

        def full_disk():
            resource.setrlimit(resource.RLIMIT_FSIZE, (0, resource.RLIM_INFINITY))

        all_tools = [name for name in PROGRAMS if name.startswith("vantry-") and not name.endswith(".bash")]
        rows = (("no tool for preferences", without("vantry-defaults"), "dock command failed: .*No such file"),
                ("no tool to end programs", without("vantry-killall"), "dock command failed: .*vantry-killall"),
                ("no tool for agents", without("vantry-launchctl"), "repair: login agent installed"),
                ("tools that hang", hanging(*all_tools), "doesn't answer"),
                ("a file in place of the support folder", in_place_of(self.support), "could not install agent"),
                ("and of the agents' folder", in_place_of(os.path.join(self.config, "vantry/LaunchAgents")), "could not install agent"),
                ("and of the autostart folder", in_place_of(os.path.join(self.config, "autostart")), "repair: dock marked dirty"),
                ("a damaged backup", damaged_backup, "holds no property list"),
                ("a full disk", lambda _: None, "could not write|is not saved|can't"))
        for number, (name, spoil, message) in enumerate(rows):
            with self.subTest(name):
                for path in (self.support, self.support + "-Recovery", os.path.join(self.config, "vantry/LaunchAgents"),
                             os.path.join(self.config, "autostart")):
                    if os.path.isdir(path):
                        shutil.rmtree(path)
                    elif os.path.exists(path):
                        os.remove(path)
                folder = self.programs_in(f"programs-{number}")
                spoil(folder)
                if name == "a full disk":
                    process, took = self.start_on(folder, full_disk)
                else:
                    process, took = self.start_from(folder)
                # Three that hang take 4.5 seconds, and one that nobody ended would take 60.
                self.assertLess(took, 20)
                eventually(lambda: re.search(message, self.session.log()), f"it says why: {message}")
                process.terminate()
                process.wait(15)
                self.session.processes.remove(process)
                self.assertEqual(process.returncode, 0)
                self.assertEqual(len(self.dock()["persistent-apps"]), 1)

    def start_on(self, folder, limit):
        """As `start_from`, under a limit, and with a pipe for its output, which files under it have no room for."""
        log = os.path.join(self.session.folder, "limited.log")
        began = time.monotonic()
        with open(log, "wb") as file:
            sink = subprocess.Popen(["cat"], stdin=subprocess.PIPE, stdout=file)

        def prepare():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            limit()

        process = subprocess.Popen([os.path.join(folder, "vantry")], env={**self.session.environment, "BAR_DEBUG": "1"},
                                   stdin=subprocess.DEVNULL, stdout=sink.stdin, stderr=sink.stdin, preexec_fn=prepare,
                                   restore_signals=False, start_new_session=True)
        sink.stdin.close()
        self.session.processes += [sink, process]
        self.session.log_file = log
        eventually(self.session.is_bar_painted, "the bar is on the screen", 20)
        return process, time.monotonic() - began


if __name__ == "__main__":
    unittest.main(verbosity=2)
