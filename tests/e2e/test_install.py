"""What is installed is all there, is found by what looks for it, and works from where it lies."""

import os
import subprocess
import sys
import unittest

from session import World

BUILD = os.environ["VANTRY_BUILD"]


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.world = cls.enterClassContext(World())
        cls.prefix = os.path.join(cls.world.folder, "prefix")
        subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix], check=True, stdout=subprocess.DEVNULL)

    def run_installed(self, name, *arguments, env=None):
        return subprocess.run([os.path.join(self.prefix, "bin", name), *arguments], env={**self.world.environment, **(env or {})},
                              capture_output=True, text=True, timeout=30, check=False)

    def test_the_program_and_its_tools_run(self):
        picture = os.path.join(self.world.folder, "bar.png")
        self.assertIn("A picture", self.run_installed("vantry", "--picture", picture).stdout)
        self.assertIn(", 0 failed ===", self.run_installed("vantry", "--embedded", "--self-test").stderr)
        self.assertEqual(self.run_installed("vantry-defaults", "write", "org.example.trial", "key", "-int", "7").returncode, 0)
        self.assertEqual(self.run_installed("vantry-defaults", "read", "org.example.trial", "key").stdout, "7\n")
        self.assertIn("usage", self.run_installed("vantry-killall", "--help").stdout)
        self.assertIn("usage", self.run_installed("vantry-launchctl", "help").stdout)

    def test_each_program_has_a_page_without_faults(self):
        for name in os.listdir(os.path.join(self.prefix, "bin")):
            page = os.path.join(self.prefix, "share/man/man1", name + ".1")
            groff = subprocess.run(["groff", "-man", "-ww", "-z", page], capture_output=True, text=True, check=False)
            self.assertEqual((groff.returncode, groff.stderr), (0, ""), name)
        with open(os.path.join(self.prefix, "share/man/man1/vantry.1"), encoding="utf-8") as file:
            page = file.read().replace("\\-", "-").replace("\\ ", " ")
        for line in self.run_installed("vantry", "--help").stdout.splitlines():
            if line.startswith("  --"):
                self.assertIn(line.split()[0], page)

    def test_desktops_accept_what_they_are_told(self):
        share = os.path.join(self.prefix, "share")
        for command in (["desktop-file-validate", share + "/applications/vantry.desktop"],
                        ["appstreamcli", "validate", "--no-net", share + "/metainfo/com.merrowen.vantry.metainfo.xml"]):
            result = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertTrue(os.path.exists(share + "/icons/hicolor/scalable/apps/vantry.svg"))


if __name__ == "__main__":
    unittest.main()
