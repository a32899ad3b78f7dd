"""Kills what changes the Dock, at every point at which it changes a file, starts a tool or has waited for one, then lets
the next start, the login agent's script or both put things in order, and compares all there is with what was before.

usage: VANTRY_PROGRAM=build/release/vantry python3 tools/crash_matrix.py [--every N] [--random N] [--act NAME]

A real dock program runs beside it; its settings are read by its own tool. The points are counted over the program and
all tools that it runs; killed are all of them at once, and in another run just the one that is at the point."""

import argparse
import os
import plistlib
import random
import shutil
import signal
import struct
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "e2e"))
from session import PROGRAM, Session, eventually  # noqa: E402

BESIDE = os.path.dirname(os.path.abspath(PROGRAM))
DOCK = "net.launchpad.plank.dock.settings:/net/launchpad/plank/docks/dock1/"
ACTS = ("start", "start-and-quit", "recommended", "move-apps", "restore", "migrate-settings", "login-item-on", "login-item-off")
CHANGES = ("start", "start-and-quit", "recommended", "move-apps")
RECOVERIES = ("start", "agent", "both")
OWN = "com.merrowen.vantry"


class Matrix(Session):
    def __init__(self):
        super().__init__(has_installed_programs=True)

    def __enter__(self):
        super().__enter__()
        self.environment |= {"GSETTINGS_BACKEND": "dconf", "GSETTINGS_SCHEMA_DIR": "/usr/share/glib-2.0/schemas"}
        self.start("/usr/libexec/dconf-service")
        self.config, self.data = self.environment["XDG_CONFIG_HOME"], self.environment["XDG_DATA_HOME"]
        self.counter = os.path.join(self.folder, "count")
        self.has_moved = False
        # How the start ended that put things in order.
        self.ended = 0
        launchers = os.path.join(self.config, "plank/dock1/launchers")
        os.makedirs(launchers)
        for name in ("l3afpad", "featherpad"):
            with open(os.path.join(launchers, name + ".dockitem"), "w", encoding="utf-8") as file:
                file.write(f"[PlankDockItemPreferences]\nLauncher=file:///usr/share/applications/{name}.desktop\n")
        self.dock("set", "icon-size", "52")
        self.dock("set", "dock-items", "['l3afpad.dockitem', 'featherpad.dockitem']")
        self.start("plank")
        eventually(lambda: [window for window in self.clients() if "plank" in str(window.get_wm_class()).lower()], "plank runs", 20)
        self.write_settings(manageDock=False, barSize="small")
        self.act("start")
        self.write_settings(manageDock=True, barSize="small")
        return self

    # What there is

    def dock(self, *arguments):
        return subprocess.run(["gsettings", arguments[0], DOCK, *arguments[1:]], env=self.environment, check=True,
                              capture_output=True, text=True).stdout.strip()

    def plist(self, name):
        try:
            with open(os.path.join(self.config, "vantry/Preferences", name + ".plist"), "rb") as file:
                return plistlib.load(file)
        except FileNotFoundError:
            return None

    def path(self, name):
        return os.path.join({"agent": self.config + "/vantry/LaunchAgents"}.get(name.split("/")[0], self.data),
                            name.removeprefix("agent/"))

    def state(self):
        """All that must come back."""
        launchers = os.path.join(self.config, "plank/dock1/launchers")
        files = {}
        for name in sorted(os.listdir(launchers)):
            with open(os.path.join(launchers, name), encoding="utf-8") as file:
                files[name] = file.read()
        kept = sorted(subprocess.run(["dconf", "dump", "/net/launchpad/plank/"], env=self.environment, check=True,
                                     capture_output=True, text=True).stdout.split("\n"))
        return {"domain": self.plist("com.apple.dock"), "hiding": self.dock("get", "hide-mode"),
                "size": self.dock("get", "icon-size"), "pins": self.dock("get", "dock-items"), "launchers": files,
                "settings of the dock": kept, "settings": self.plist(OWN), "gesture": self.plist("com.apple.AppleMultitouchTrackpad"),
                "flag": os.path.exists(self.path("Vantry/dock-dirty.flag")),
                "panel": self.plist(OWN + ".panel")}

    def has_backup(self):
        return os.path.exists(self.path("Vantry/dock-backup.plist")) or os.path.exists(self.path("Vantry-Recovery/dock-backup.plist"))

    # What is done

    def act(self, name, crash_at=0, alone=False, kill_after=None):
        """Its status, and at how many points it came by."""
        with open(self.counter, "wb") as file:
            file.write(struct.pack("i", 0))
        environment = {**self.environment, "DOCK_ACT": name, "LD_PRELOAD": os.path.join(BESIDE, "libcrash_point.so"),
                       "CRASH_COUNT": self.counter, "CRASH_AT": str(crash_at), **({"CRASH_ALONE": "1"} if alone else {})}
        process = subprocess.Popen([os.path.join(BESIDE, "dock_driver")], env=environment, start_new_session=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            process.wait(kill_after or 20)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        with open(self.counter, "rb") as file:
            return process.returncode, struct.unpack("i", file.read(4))[0]

    def recover(self, how):
        if how in ("agent", "both") and os.path.exists(self.path(f"agent/{OWN}.repair.plist")):
            subprocess.run([os.path.join(BESIDE, "vantry-launchctl"), "start", self.path(f"agent/{OWN}.repair.plist")],
                           env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20)
        if how in ("start", "both"):
            store = self.plist(OWN) or {}
            self.write_settings(**{**store, "manageDock": False})
            self.ended, _ = self.act("start")
            store = self.plist(OWN)
            if "manageDock" in store:
                self.write_settings(**{**store, "manageDock": True})

    def keep(self, place):
        """A copy of everything that may be changed, to go back to."""
        shutil.rmtree(place, ignore_errors=True)
        for name, folder in (("config", self.config), ("data", self.data)):
            shutil.copytree(folder, os.path.join(place, name), symlinks=True)

    def go_back(self, place):
        for name in ("vantry", "autostart"):
            shutil.rmtree(os.path.join(self.config, name), ignore_errors=True)
            if os.path.exists(os.path.join(place, "config", name)):
                shutil.copytree(os.path.join(place, "config", name), os.path.join(self.config, name))
        for name in ("Vantry", "Vantry-Recovery", "Kelmora", "Kelmora-Recovery"):
            shutil.rmtree(os.path.join(self.data, name), ignore_errors=True)
            if os.path.exists(os.path.join(place, "data", name)):
                shutil.copytree(os.path.join(place, "data", name), os.path.join(self.data, name))
        launchers = os.path.join(self.config, "plank/dock1/launchers")
        for name in ("l3afpad.dockitem", "featherpad.dockitem"):
            if not os.path.exists(os.path.join(launchers, name)):
                # At once: the dock would take a file in that is still empty, and be done with it.
                shutil.copy(os.path.join(place, "config/plank/dock1/launchers", name), os.path.join(self.folder, name))
                os.replace(os.path.join(self.folder, name), os.path.join(launchers, name))
                self.has_moved = True
        self.dock("reset", "hide-mode")
        self.dock("set", "icon-size", "52")
        self.set_pins()

    def set_pins(self):
        """In their order, which the dock goes over again while it takes in files that have come."""
        wanted = "['l3afpad.dockitem', 'featherpad.dockitem']"
        while True:
            if self.dock("get", "dock-items") != wanted:
                self.dock("set", "dock-items", wanted)
            elif self.is_settled(wanted):
                return

    def is_settled(self, wanted):
        """Nothing is taken in any more for as long as the dock takes for it."""
        if not self.has_moved:
            return True
        time.sleep(2)
        self.has_moved = self.dock("get", "dock-items") != wanted
        return not self.has_moved

    def prepare(self, act):
        """What the act finds: for some, what another has left."""
        if act == "restore":
            self.act("recommended")
        elif act == "migrate-settings":
            os.remove(os.path.join(self.config, "vantry/Preferences", OWN + ".plist"))
            for number, name in enumerate(("com.merrowen.kelmora", "com.local.kelmora")):
                with open(os.path.join(self.config, "vantry/Preferences", name + ".plist"), "wb") as file:
                    plistlib.dump({"barSize": "small", "manageDock": True, "number": number, "unknown": [1, {"a": b"b"}]}, file)
            for name in ("Kelmora", "Kelmora-Recovery"):
                os.makedirs(os.path.join(self.data, name))
                with open(os.path.join(self.data, name, "file"), "w", encoding="utf-8") as file:
                    file.write(name)
        elif act == "login-item-off":
            self.act("login-item-on")

    def faults(self, act, before, how, alone):
        """What isn't as it was, beyond the remainders that are meant."""
        if act == "move-apps":
            # The dock takes its time with files that come and go.
            time.sleep(2)
        after = self.state()
        faults = []
        # Nothing but the agent looks at a flag that was raised before the agent was installed; nothing is changed then.
        if how == "agent" and after["flag"] and not os.path.exists(self.path(f"agent/{OWN}.repair.plist")):
            after["flag"] = before["flag"]
        if alone and (before["domain"] or {}).items() >= after["domain"].items():
            # A tool that was killed by itself, at which nobody looks: the next start reads the domain from the panel.
            after["domain"] = before["domain"]
        if act == "move-apps":
            # An application may be in both places, never in neither; the script can't say that the Dock has them again.
            for key in ("extraPinnedPaths", "pinnedNames"):
                after["settings"].pop(key, None)
        for state in (before, after):
            (state["settings"] or {}).pop("dockMigrated", None)
        if act == "migrate-settings":
            return faults + self.faults_of_migration(how)
        if act.startswith("login-item"):
            for state in (before, after):
                state["settings"].pop("loginItemBundlePath", None)
            if how != "agent":
                stored = (self.plist(OWN) or {}).get("loginItemBundlePath")
                if bool(stored) != os.path.exists(os.path.join(self.config, f"autostart/{OWN}.desktop")):
                    faults.append("the login item and what is stored of it differ")
        if self.ended != 0:
            faults.append(f"the start ended with {self.ended}")
        for key, value in before.items():
            if after[key] != value:
                faults.append(f"{key}: {difference(value, after[key])}")
        return faults

    def faults_of_migration(self, how):
        faults = []
        values = self.plist(OWN) or {}
        first = self.plist("com.merrowen.kelmora")
        if how == "agent":
            values = values if "number" in values else first or {}
        if values.get("number") != 0 or values.get("unknown") != [1, {"a": b"b"}]:
            faults.append(f"settings lost: {values}")
        if (self.plist("com.local.kelmora") or {}).get("number") != 1:
            faults.append("the second former domain is gone")
        for old, new in (("Kelmora", "Vantry"), ("Kelmora-Recovery", "Vantry-Recovery")):
            if not any(os.path.exists(os.path.join(self.data, name, "file")) for name in (old, new)):
                faults.append(f"the folder {old} is lost")
        return faults


def difference(before, after):
    """Of two dictionaries what isn't the same."""
    if isinstance(before, dict) and isinstance(after, dict):
        return ", ".join(f"{key}: {difference(before.get(key), after.get(key))}" for key in before | after
                         if before.get(key) != after.get(key))
    return f"was {before}, is {after}"


def run(options):
    runs = lost = 0
    random.seed(1)
    start = time.monotonic()
    with Matrix() as matrix:
        kept = os.path.join(matrix.folder, "kept")
        matrix.keep(kept)
        for act in [options.act] if options.act else ACTS:
            def set_up():
                matrix.go_back(kept)
                before = matrix.state()
                matrix.prepare(act)
                return before

            set_up()
            began = time.monotonic()
            _, points = matrix.act(act)
            took = time.monotonic() - began
            cases = [(point, alone, None) for point in range(1, points + 1) for alone in (False, True)]
            offset = random.randrange(options.every)
            cases = cases[offset::options.every]
            cases += [(0, False, random.uniform(0, took)) for _ in range(options.random // len(ACTS))]
            failed, unsaved, later = [], 0, 0
            for number, case in enumerate(cases):
                how = RECOVERIES[(number + number // 3) % 3] if options.every > 1 else None
                for recovery in [how] if how else RECOVERIES:
                    before = set_up()
                    matrix.act(act, *case)
                    matrix.recover(recovery)
                    runs += 1
                    faults = matrix.faults(act, before, recovery, case[1])
                    if faults and case[1] and act in CHANGES and not matrix.has_backup():
                        # The tool that takes the backup was killed by itself: nobody looks at how a tool ends.
                        unsaved += 1
                        continue
                    if faults and case[1] and recovery == "agent":
                        # Likewise the one that gives the panel back, and the flag came down.
                        matrix.recover("start")
                        faults = matrix.faults(act, before, "both", True)
                        later += not faults
                    if faults:
                        failed.append((case, recovery, faults))
            lost += len(failed)
            print(f"{act:17} {points:4} points, {len(cases):4} kills, {len(failed)} of them lost something, {unsaved} left no backup, "
                  f"{later} were put right by the next start alone", flush=True)
            for case, recovery, faults in failed[:options.show]:
                print(f"    at {case}, then {recovery}:", *faults, sep="\n        ", flush=True)
    print(f"{runs} runs in {time.monotonic() - start:.0f} s, {lost} lost something")
    return lost


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--every", type=int, default=1, help="every so many-th point, each with one recovery in turn")
    parser.add_argument("--random", type=int, default=200, help="kills at random moments, over all acts")
    parser.add_argument("--act", choices=ACTS)
    parser.add_argument("--show", type=int, default=3)
    if not shutil.which("plank"):
        sys.exit(77)
    sys.exit(1 if run(parser.parse_args()) else 0)


if __name__ == "__main__":
    main()
