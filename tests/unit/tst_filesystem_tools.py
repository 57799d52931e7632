#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the bundles' executables make of how a file system's own tool has ended. The tools are stand-ins that end as they
are told to."""

import os
import pathlib
import select
import shutil
import signal
import subprocess
import tempfile
import unittest

TOOLS = pathlib.Path(__file__).parents[2] / "resources/Filesystems/Tools"
LIMIT = 20  # seconds; what a machine under load still needs

CLEAN = 0
ERRORS = 8
COULD_NOT_RUN = 2
UNREADABLE = 74

# The tools of each executable, in the order in which it runs them when all end with 0.
EXECUTABLES = {
    "btrfs/verify": ["btrfs"],
    "btrfs/repair": ["btrfs"],
    "exfat/verify": ["fsck.exfat"],
    "exfat/repair": ["fsck.exfat"],
    "ext/verify": ["e2fsck"],
    "ext/repair": ["e2fsck"],
    "f2fs/verify": ["fsck.f2fs"],
    "f2fs/repair": ["fsck.f2fs"],
    "fat/verify": ["fsck.fat"],
    "fat/repair": ["fsck.fat"],
    "ntfs/verify": ["ntfsfix", "ntfsinfo", "ntfsresize"],
    "ntfs/repair": ["ntfsfix", "ntfsinfo", "ntfsresize"],
    "xfs/verify": ["xfs_repair"],
    "xfs/repair": ["xfs_repair"],
}

# How each executable calls them then. A check never lets a tool write.
CALLS = {
    "btrfs/verify": ["btrfs check --readonly --progress DEVICE"],
    "btrfs/repair": ["btrfs check --readonly --progress DEVICE"],
    "exfat/verify": ["fsck.exfat -n DEVICE"],
    "exfat/repair": ["fsck.exfat -y DEVICE", "fsck.exfat -n DEVICE"],
    "ext/verify": ["e2fsck -f -n -C 0 DEVICE"],
    "ext/repair": ["e2fsck -f -y -C 0 DEVICE"],
    "f2fs/verify": ["fsck.f2fs --dry-run DEVICE"],
    "f2fs/repair": ["fsck.f2fs -f -y DEVICE", "fsck.f2fs --dry-run DEVICE"],
    "fat/verify": ["fsck.fat -n DEVICE"],
    "fat/repair": ["fsck.fat -a DEVICE"],
    "ntfs/verify": ["ntfsfix -n DEVICE", "ntfsinfo -m -f DEVICE", "ntfsresize --info --force --force --bad-sectors DEVICE"],
    "ntfs/repair": ["ntfsfix -d DEVICE", "ntfsfix -n DEVICE", "ntfsinfo -m -f DEVICE",
                    "ntfsresize --info --force --force --bad-sectors DEVICE"],
    "xfs/verify": ["xfs_repair -n DEVICE"],
    "xfs/repair": ["xfs_repair DEVICE", "xfs_repair -n DEVICE"],
}

# Its n-th call does what the n-th line of its plan says, or ends with 0.
STAND_IN = """#!/bin/sh
echo "${{0##*/}} $*" >>'{folder}/calls'
eval "$(sed -n "$(grep -c "^${{0##*/}} " '{folder}/calls')p" "$0.plan")"
"""


class FilesystemTools(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.device = self.folder / "device"
        self.device.touch()
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        for program in ["dirname", "grep", "perl", "sed", "stdbuf", "tee", "tr"]:
            (self.programs / program).symlink_to(shutil.which(program))
        # As they are installed: with those that every bundle has.
        for family in {executable.partition("/")[0] for executable in EXECUTABLES}:
            shutil.copytree(TOOLS / family, self.folder / family)
            shutil.copytree(TOOLS / "all", self.folder / family, dirs_exist_ok=True)

    def plan(self, tool, *lines):
        stand_in = self.programs / tool
        stand_in.write_text(STAND_IN.format(folder=self.folder))
        stand_in.chmod(0o755)
        (self.programs / f"{tool}.plan").write_text("".join(f"{line}\n" for line in lines))

    def start(self, executable):
        (self.folder / "calls").write_text("")
        return subprocess.Popen([self.folder / executable, self.device], env={"PATH": str(self.programs), "LC_ALL": "C.UTF-8"},
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def run_it(self, executable):
        with self.start(executable) as process:
            self.output = process.communicate(timeout=LIMIT)[0].decode()
        return process.returncode

    def calls(self):
        return (self.folder / "calls").read_text().splitlines()

    def test_all_is_well(self):
        for executable, tools in EXECUTABLES.items():
            with self.subTest(executable):
                for tool in tools:
                    self.plan(tool)
                self.assertEqual(self.run_it(executable), CLEAN, self.output)
                self.assertEqual([call.replace(str(self.device), "DEVICE") for call in self.calls()], CALLS[executable])

    def test_a_device_that_is_gone_is_not_judged_by_what_a_tool_says_of_it(self):
        self.device.unlink()
        for executable in ["btrfs/verify", "btrfs/repair", "f2fs/verify", "f2fs/repair", "ntfs/verify", "ntfs/repair"]:
            with self.subTest(executable):
                for tool in EXECUTABLES[executable]:
                    self.plan(tool, "exit 1")
                self.assertEqual(self.run_it(executable), COULD_NOT_RUN)
                self.assertEqual(self.calls(), [])

    def test_a_tool_that_was_killed_or_is_missing_is_no_verdict(self):
        for executable, tools in EXECUTABLES.items():
            for culprit in tools:
                signals = [signal.SIGKILL, signal.SIGTERM, signal.SIGABRT, signal.SIGSEGV]
                for end in [*(f"kill -{number:d} $$" for number in signals), "exit 126", None]:
                    with self.subTest(f"{executable}: {culprit}: {end}"):
                        for tool in tools:
                            self.plan(tool)
                        if end:
                            self.plan(culprit, end)
                        else:
                            (self.programs / culprit).unlink()
                        self.assertEqual(self.run_it(executable), COULD_NOT_RUN, self.output)

    def test_btrfs_is_repaired_only_after_a_check_that_has_found_errors(self):
        for end in ["exit 0", "exit 2", "exit 127", "kill -9 $$"]:
            with self.subTest(end):
                self.plan("btrfs", end)
                self.run_it("btrfs/repair")
                self.assertEqual(self.calls(), [f"btrfs check --readonly --progress {self.device}"])

        self.plan("btrfs", "exit 1")
        self.assertEqual(self.run_it("btrfs/repair"), CLEAN)
        self.assertEqual([call.split()[2] for call in self.calls()], ["--readonly", "--repair", "--readonly"])
        # It would drop the claim on the device, and the look for a mount.
        self.assertNotIn("--force", " ".join(self.calls()))

        for plan, result in [
            (["exit 1", "exit 1", "exit 0"], CLEAN),
            (["exit 1", "exit 0", "echo 'Error reading 22036480, -1'; exit 1"], UNREADABLE),
            (["exit 1", "exit 0", "exit 1"], ERRORS),
            (["exit 1", "kill -11 $$"], COULD_NOT_RUN),
            (["exit 1", "exit 0", "kill -11 $$"], COULD_NOT_RUN),
        ]:
            with self.subTest(plan):
                self.plan("btrfs", *plan)
                self.assertEqual(self.run_it("btrfs/repair"), result)

    def test_fat_is_checked_after_a_repair_that_has_met_errors(self):
        for plan, calls, result in [
            (["exit 0", "exit 1"], ["-a"], CLEAN),
            (["exit 1", "exit 0"], ["-a", "-n"], CLEAN),
            (["exit 1", "exit 1"], ["-a", "-n"], ERRORS),
            (["exit 1", "exit 2"], ["-a", "-n"], COULD_NOT_RUN),
            (["exit 2", "exit 0"], ["-a"], COULD_NOT_RUN),
        ]:
            with self.subTest(plan):
                self.plan("fsck.fat", *plan)
                self.assertEqual(self.run_it("fat/repair"), result)
                self.assertEqual([call.split()[1] for call in self.calls()], calls)

    def test_a_repair_that_says_it_is_done_is_checked(self):
        for executable, tool in [("exfat/repair", "fsck.exfat"), ("f2fs/repair", "fsck.f2fs"), ("xfs/repair", "xfs_repair")]:
            for plan, calls, result in [
                (["exit 0", "exit 0"], 2, CLEAN),
                (["exit 0", "exit 1"], 2, ERRORS),
                (["exit 0", "exit 2"], 2, COULD_NOT_RUN),
                (["exit 0", "kill -9 $$"], 2, COULD_NOT_RUN),
                (["exit 2", "exit 0"], 1, COULD_NOT_RUN),
            ]:
                with self.subTest(f"{executable}: {plan}"):
                    self.plan(tool, *plan)
                    self.assertEqual(self.run_it(executable), result, self.output)
                    self.assertEqual(len(self.calls()), calls)
        self.plan("fsck.exfat", "exit 1", "echo 'ERROR: bad. Fix (y/N)? n'")
        self.assertEqual(self.run_it("exfat/repair"), ERRORS)

    def test_ntfs_is_checked_after_a_repair(self):
        dirty = "echo '   Volume Flags: 0x0001 DIRTY'"
        for fix, info, resize, calls, result in [
            (["exit 1"], "exit 0", "exit 0", 1, ERRORS),
            (["exit 2"], "exit 0", "exit 0", 1, COULD_NOT_RUN),
            (["exit 0", "exit 0"], "exit 0", "exit 0", 4, CLEAN),
            (["exit 0", "exit 1"], "exit 0", "exit 0", 4, ERRORS),
            (["exit 0", "exit 0"], "exit 1", "exit 0", 4, CLEAN),
            (["exit 0", "exit 0"], dirty, "exit 0", 4, ERRORS),
            (["exit 0", "exit 0"], "exit 0", "exit 1", 4, ERRORS),
        ]:
            with self.subTest(f"{fix} {info} {resize}"):
                self.plan("ntfsfix", *fix)
                self.plan("ntfsinfo", info)
                self.plan("ntfsresize", resize)
                self.assertEqual(self.run_it("ntfs/repair"), result, self.output)
                self.assertEqual(len(self.calls()), calls)
                self.assertEqual("marked as in need of repair" in self.output, info == dirty)

    def test_an_xfs_log_that_holds_changes_is_left_to_a_person(self):
        self.plan("xfs_repair", "exit 2")
        self.assertEqual(self.run_it("xfs/repair"), COULD_NOT_RUN)
        self.assertIn("Mount and unmount the volume", self.output)
        self.assertEqual(len(self.calls()), 1)

    def test_verdicts(self):
        for executable, tool, status, result in [
            ("btrfs/verify", "btrfs", 1, ERRORS),
            ("btrfs/verify", "btrfs", 2, COULD_NOT_RUN),
            ("ext/verify", "e2fsck", 1, COULD_NOT_RUN),
            ("ext/verify", "e2fsck", 2, COULD_NOT_RUN),
            ("ext/verify", "e2fsck", 5, ERRORS),
            ("ext/verify", "e2fsck", 15, ERRORS),
            ("ext/verify", "e2fsck", 20, COULD_NOT_RUN),
            ("ext/verify", "e2fsck", 4, ERRORS),
            ("ext/verify", "e2fsck", 12, ERRORS),
            ("ext/verify", "e2fsck", 8, COULD_NOT_RUN),
            ("ext/verify", "e2fsck", 36, COULD_NOT_RUN),
            ("ext/repair", "e2fsck", 1, CLEAN),
            ("ext/repair", "e2fsck", 2, CLEAN),
            ("ext/repair", "e2fsck", 3, CLEAN),
            ("ext/repair", "e2fsck", 4, ERRORS),
            ("ext/repair", "e2fsck", 5, ERRORS),
            ("ext/repair", "e2fsck", 8, COULD_NOT_RUN),
            ("ext/repair", "e2fsck", 9, COULD_NOT_RUN),
            ("ext/repair", "e2fsck", 12, ERRORS),
            ("ext/repair", "e2fsck", 15, ERRORS),
            ("ext/repair", "e2fsck", 20, COULD_NOT_RUN),
            ("f2fs/verify", "fsck.f2fs", 1, ERRORS),
            ("f2fs/verify", "fsck.f2fs", 2, COULD_NOT_RUN),
            ("f2fs/verify", "fsck.f2fs", 4, ERRORS),
            ("f2fs/verify", "fsck.f2fs", 5, ERRORS),
            ("f2fs/verify", "fsck.f2fs", 255, ERRORS),
            ("f2fs/repair", "fsck.f2fs", 2, COULD_NOT_RUN),
            ("f2fs/repair", "fsck.f2fs", 4, ERRORS),
            ("f2fs/repair", "fsck.f2fs", 5, ERRORS),
            ("f2fs/repair", "fsck.f2fs", 255, ERRORS),
            ("f2fs/repair", "fsck.f2fs", 1, CLEAN),
            ("ntfs/verify", "ntfsfix", 1, ERRORS),
            ("ntfs/verify", "ntfsfix", 2, COULD_NOT_RUN),
            ("ntfs/verify", "ntfsinfo", 1, CLEAN),
            ("ntfs/verify", "ntfsinfo", 2, COULD_NOT_RUN),
            ("ntfs/verify", "ntfsresize", 2, COULD_NOT_RUN),
            ("ntfs/verify", "ntfsresize", 1, ERRORS),
            ("ntfs/repair", "ntfsfix", 1, ERRORS),
            ("xfs/verify", "xfs_repair", 1, ERRORS),
            ("xfs/verify", "xfs_repair", 2, COULD_NOT_RUN),
            ("xfs/repair", "xfs_repair", 1, ERRORS),
            ("xfs/repair", "xfs_repair", 2, COULD_NOT_RUN),
            ("fat/verify", "fsck.fat", 1, ERRORS),
            ("fat/verify", "fsck.fat", 2, COULD_NOT_RUN),
            ("exfat/verify", "fsck.exfat", 1, ERRORS),
            ("exfat/verify", "fsck.exfat", 2, COULD_NOT_RUN),
            ("exfat/verify", "fsck.exfat", 4, ERRORS),
            ("exfat/verify", "fsck.exfat", 5, ERRORS),
            ("exfat/verify", "fsck.exfat", 8, COULD_NOT_RUN),
            ("exfat/repair", "fsck.exfat", 1, CLEAN),
            ("exfat/repair", "fsck.exfat", 2, COULD_NOT_RUN),
            ("exfat/repair", "fsck.exfat", 4, ERRORS),
            ("exfat/repair", "fsck.exfat", 5, ERRORS),
            ("exfat/repair", "fsck.exfat", 8, COULD_NOT_RUN),
        ]:
            with self.subTest(f"{executable}: {status}"):
                for other in EXECUTABLES[executable]:
                    self.plan(other)
                self.plan(tool, f"exit {status}")
                self.assertEqual(self.run_it(executable), result, self.output)

    def test_a_read_that_fails_is_no_verdict(self):
        for executable, tool, words, status in [
            ("fat/verify", "fsck.fat", "Read 512 bytes at 16384:Input/output error", 1),
            ("fat/repair", "fsck.fat", "Read 512 bytes at 16384:Input/output error", 1),
            ("xfs/verify", "xfs_repair", "fatal error -- Input/output error", 1),
            ("xfs/verify", "xfs_repair", "xfs_repair: read failed: Input/output error", 1),
            ("xfs/repair", "xfs_repair", "fatal error -- Input/output error", 1),
            ("ext/verify", "e2fsck", "Error reading block 86 (Input/output error).  Ignore error? no", 12),
            ("ext/repair", "e2fsck", "Error reading block 86 (Input/output error).  Ignore error? yes", 12),
            ("ext/verify", "e2fsck", "e2fsck: Input/output error while reading bad blocks inode", 12),
            ("ext/verify", "e2fsck", "Error reading inode 12: Input/output error", 12),
            ("ext/verify", "e2fsck", "Error while scanning inodes (17): Input/output error", 12),
            ("btrfs/verify", "btrfs", "Error reading 22036480, -1", 1),
            ("btrfs/repair", "btrfs", "Error reading 22036480, -1", 1),
        ]:
            with self.subTest(f"{executable}: {words}"):
                self.plan(tool, f"echo '{words}'; exit {status}")
                self.assertEqual(self.run_it(executable), UNREADABLE, self.output)
                self.assertEqual(self.output, f"{words}\n")
                self.assertEqual(len(self.calls()), 1)
                # Damage, told in other words, is a verdict; so is a volume that is sound in spite of it.
                self.plan(tool, f"echo 'a name: {words.lower()}?'; exit {status}")
                self.assertNotEqual(self.run_it(executable), UNREADABLE)
                self.plan(tool, f"echo '{words}'")
                self.assertEqual(self.run_it(executable), CLEAN)
                # A name on the volume may be anything.
                self.plan(tool, f"echo 'Entry {words}'; exit {status}")
                self.assertNotEqual(self.run_it(executable), UNREADABLE)

    def test_a_read_that_fails_is_heard_of_after_a_bar_of_progress(self):
        words = r"\001Volume: |==   | 10.0%%\r\002Error reading block 86 (Input/output error).  Ignore error? no\n"
        for executable in "ext/verify", "ext/repair":
            self.plan("e2fsck", f"printf '{words}'; exit 12")
            self.assertEqual(self.run_it(executable), UNREADABLE, self.output)
            self.assertIn("\r\x02Error", self.output)

    def test_a_volume_that_is_larger_than_its_device_has_errors(self):
        for words in "Failed to read sector 20479.", "Got 0 bytes instead of 512 at 16384":
            self.plan("fsck.fat", f"echo '{words}'; exit 1")
            self.assertEqual(self.run_it("fat/verify"), ERRORS, self.output)

    def test_a_question_of_fsck_exfat_is_an_error(self):
        self.plan("fsck.exfat", "echo 'ERROR: bad. Fix (y/N)? n'")
        self.assertEqual(self.run_it("exfat/verify"), ERRORS)
        self.assertEqual(self.output, "ERROR: bad. Fix (y/N)? n\n")

    def test_a_full_ntfs_volume_is_sound_as_far_as_the_others_say(self):
        full = "echo 'ERROR: Volume is full. To shrink it, delete unused files.'; exit 1"
        for others, result in [("exit 0", CLEAN), ("exit 1", ERRORS)]:
            self.plan("ntfsfix", others)
            self.plan("ntfsinfo")
            self.plan("ntfsresize", full)
            self.assertEqual(self.run_it("ntfs/verify"), result, self.output)
            self.assertNotIn("ERROR: Volume is full", self.output)
            self.assertIn("The volume is full, which is no error.", self.output)

    def test_a_check_of_ntfs_gives_no_advice_for_resizing(self):
        self.plan("ntfsfix")
        self.plan("ntfsinfo")
        self.plan("ntfsresize", "printf 'Checking filesystem consistency ...\\n  0.00 percent\\r100.00 percent\\n"
                  "Collecting resizing constraints ...\\nYou might resize at 2564096 bytes or 3 MB (freeing 18 MB).\\n"
                  "Please make a test run using both the -n and -s options before real resizing!\\nYou see\\nPlease'")
        self.assertEqual(self.run_it("ntfs/verify"), CLEAN)
        self.assertEqual(self.output, "Checking filesystem consistency ...\n  0.00 percent\r100.00 percent\nYou see\nPlease")

    def test_output_comes_as_the_tool_writes_it(self):
        os.mkfifo(self.folder / "go")
        self.addCleanup(os.close, os.open(self.folder / "go", os.O_RDWR))  # a stand-in never waits for its writer
        for executable, tool in [("exfat/verify", "fsck.exfat"), ("ntfs/verify", "ntfsresize")]:
            with self.subTest(executable):
                for other in EXECUTABLES[executable]:
                    self.plan(other)
                # sed writes into a pipe what it has when it ends, unless it is told otherwise.
                self.plan(tool, f"(echo half; read go <'{self.folder}/go'; echo whole) | sed ''")
                process = self.start(executable)
                self.addCleanup(process.stdout.close)
                output = b""
                while output != b"half\n":
                    self.assertTrue(select.select([process.stdout], [], [], LIMIT)[0], "nothing comes before the end")
                    output += os.read(process.stdout.fileno(), 1)
                (self.folder / "go").write_text("go\n")
                self.assertEqual(process.stdout.read(), b"whole\n")
                self.assertEqual(process.wait(LIMIT), CLEAN)


if __name__ == "__main__":
    unittest.main()
