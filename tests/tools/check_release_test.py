"""tools/check_release: a good release has nothing to complain about, and for each rule there is one
that breaks it: check_release_test.py REPOSITORY PACKAGED_FOLDER"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from planted_mistakes import load

PACKAGED_FOLDER = pathlib.Path(sys.argv.pop())
COMMAND = pathlib.Path(sys.argv.pop()) / "tools" / "check_release"

check_release = load(COMMAND)


class CheckReleaseTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.release = pathlib.Path(scratch.name) / "release"
        self.manager = self.release / "NHUpdateManager"
        shutil.copytree(PACKAGED_FOLDER, self.manager)
        self.put("Version.txt", b"[ProductVersion]\r\nVersion=2.0.0\r\n")
        self.put("NHHub.exe")
        self.put("Plugins/Cameras/cam.dll")
        self.put("NHUpdateManager/NHUninstaller/NHUninstaller.exe")
        self.put("NHUpdateManager/NHCollectLog/NHCollectLog.exe")

    def put(self, path, content=b"something"):
        file = self.release / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)

    def findings(self):
        """All but that the packaged program isn't signed, which it needn't be here."""
        return [
            finding
            for finding in check_release.findings(check_release.Release(self.release))
            if finding.what != "is not signed"
        ]

    def expect(self, level, path, what):
        self.assertEqual(
            [(finding.level, finding.path, finding.what) for finding in self.findings()],
            [(level, path, what)],
        )

    def run_command(self, *arguments):
        return subprocess.run(
            [COMMAND, *arguments], capture_output=True, text=True, check=False, encoding="utf-8"
        )

    # The command.

    def test_a_good_release_ends_with_0(self):
        self.assertEqual(self.findings(), [])
        run = self.run_command(self.release)
        self.assertEqual(run.returncode, 0, run.stdout)
        self.assertRegex(run.stdout, r"(?m)^0 errors, 0 warnings, \d notes$")

    def test_an_error_is_one_line_and_ends_with_1(self):
        (self.release / "Version.txt").unlink()
        run = self.run_command(self.release)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(
            run.stdout.splitlines()[0],
            "error: Version.txt is missing: the installed one is deleted, and -download can no"
            " longer tell one version from another. Add it: [ProductVersion], Version=....",
        )

    def test_a_warning_ends_with_0(self):
        (self.release / "Empty").mkdir()
        run = self.run_command(self.release)
        self.assertEqual(run.returncode, 0)
        self.assertTrue(run.stdout.startswith("warning: Empty\\ has no file: "), run.stdout)

    def test_it_says_what_becomes_of_what_is_on_the_disk(self):
        lines = self.run_command(self.release).stdout.splitlines()
        self.assertIn(
            "  all top-level files are deleted, users' own too; in their place come:"
            " NHHub.exe, Version.txt",
            lines,
        )
        self.assertIn("  replaced whole, with whatever users have put there: Plugins", lines)

    def test_what_only_the_previous_release_has_stays(self):
        previous = self.release.parent / "previous"
        shutil.copytree(self.release, previous)
        (previous / "Old plug-ins").mkdir()
        run = self.run_command(self.release, previous)
        self.assertEqual(run.returncode, 0)
        self.assertIn("note: Old plug-ins\\ was in the release before: it stays", run.stdout)

    def test_no_folder_ends_with_2(self):
        for arguments in ([], ["--help"], [self.release / "none"], [self.release / "NHHub.exe"]):
            self.assertEqual(self.run_command(*arguments).returncode, 2, arguments)

    # The rules.

    def test_nothing_staged(self):
        shutil.rmtree(self.release)
        (self.release / "Empty").mkdir(parents=True)
        self.assertIn(
            ("error", ".", "has no file"), [finding[:3] for finding in self.findings()]
        )

    def test_no_top_level_file(self):
        for file in ("Version.txt", "NHHub.exe"):
            (self.release / file).unlink()
        self.assertIn(
            ("warning", ".", "has no top-level file"), [finding[:3] for finding in self.findings()]
        )

    def test_a_file_in_the_place_of_a_folder(self):
        self.put("updater")
        self.expect("error", "updater", "is a file in the place of a folder")

    def test_attributes_of_files_that_are_copied_over(self):
        attributes = {"NHHub.exe": 2, "LogConfig.ini": 3, "cam.dll": 3}
        original = check_release.obstacle

        def obstacle(entry):
            known = attributes.get(entry.name)
            if known is None:
                return original(entry)
            return {2: "hidden", 3: "read-only and hidden"}[known], True

        check_release.obstacle = obstacle
        self.addCleanup(setattr, check_release, "obstacle", original)
        # Sub-folders are deleted first, whatever the attributes in them.
        self.assertEqual(
            [finding[:3] for finding in self.findings()],
            [
                ("error", "NHHub.exe", "is hidden"),
                ("error", "NHUpdateManager\\LogConfig.ini", "is read-only and hidden"),
            ],
        )

    def test_attributes_are_read_as_samba_keeps_them(self):
        file = self.release / "NHHub.exe"
        try:
            os.setxattr(file, "user.DOSATTRIB", b"0x23\0")
        except OSError as error:
            self.skipTest(f"no attributes here: {error}")
        self.expect("error", "NHHub.exe", "is read-only and hidden")

    def test_a_file_that_may_become_read_only(self):
        (self.release / "NHHub.exe").chmod(0o444)
        self.expect("warning", "NHHub.exe", "is read-only")

    def test_version_file(self):
        wrong = "has no Version in the section [ProductVersion]"
        for content, level, what in (
            (b"", "error", wrong),
            (b"Version=2.0.0\n", "error", wrong),
            (b"[Product]\nVersion=2.0.0\n", "error", wrong),
            (b"[ProductVersion]\nVersion=\n", "error", wrong),
            (b"[ProductVersion]\n[Other]\nVersion=2\n", "error", wrong),
            (b"\xef\xbb\xbf[ProductVersion]\nVersion=2\n", "error", "begins with a UTF-8 mark"),
            (
                b"[ProductVersion]\nVersion=" + b"2" * 256,
                "error",
                "has a version of more than 255 characters",
            ),
            ("[ProductVersion]\nVersion=2 ü".encode(), "warning", "has letters outside ASCII"),
        ):
            with self.subTest(content=content):
                self.put("Version.txt", content)
                self.expect(level, "Version.txt", what)

    def test_version_files_that_windows_reads(self):
        for content in (
            b"; a comment\r\n[productversion]\r\nVERSION = \"2.0.0\"\r\n",
            b"[Other]\nVersion=1\n[ProductVersion]\nVersion=" + b"2" * 255,
            b"\xff\xfe" + "[ProductVersion]\r\nVersion=2.0 ü\r\n".encode("utf-16-le"),
        ):
            with self.subTest(content=content):
                self.put("Version.txt", content)
                self.assertEqual(self.findings(), [])

    def test_no_version_file(self):
        (self.release / "Version.txt").unlink()
        self.expect("error", "Version.txt", "is missing")

    def test_no_program_folder(self):
        shutil.rmtree(self.manager)
        self.expect("error", "NHUpdateManager\\", "is missing")

    def test_the_programs_folder_in_other_letters(self):
        self.manager.rename(self.release / "nhUpdateManager")
        self.expect("error", "nhUpdateManager\\", "is not called NHUpdateManager in just these letters")

    def test_missing_files_of_the_program(self):
        for file, level in (
            ("NHUpdateManager.exe", "error"),
            ("NSWLogDynamic64U.dll", "error"),
            ("Config\\NHUpdateManager.Default.json", "error"),
            ("Config\\SteamLanguageMapping.ini", "warning"),
            ("LogConfig.ini", "warning"),
            ("NOTICES.txt", "warning"),
            ("NHUninstaller\\NHUninstaller.exe", "note"),
            ("NHCollectLog\\NHCollectLog.exe", "note"),
        ):
            with self.subTest(file=file):
                path = self.manager.joinpath(*file.split("\\"))
                # Another file keeps the folder from being empty.
                other = path.rename(path.with_name("other.txt"))
                self.expect(level, f"NHUpdateManager\\{file}", "is missing")
                other.rename(path)

    def test_programs_that_cannot_be_started(self):
        file = self.manager / "NHUpdateManager.exe"
        program = file.read_bytes()
        header = int.from_bytes(program[60:64], "little")
        other_machine = program[: header + 4] + b"\x4c\x01" + program[header + 6 :]
        for content, what in (
            (b"", "is no Windows program"),
            (b"MZ" + bytes(200), "is no Windows program"),
            (other_machine, "is not for 64-bit Windows"),
        ):
            with self.subTest(what=what):
                file.write_bytes(content)
                self.expect("error", "NHUpdateManager\\NHUpdateManager.exe", what)

    def test_a_program_without_a_signature(self):
        found = check_release.findings(check_release.Release(self.release))
        unsigned = [finding.path for finding in found if finding.what == "is not signed"]
        program = (self.manager / "NHUpdateManager.exe").read_bytes()
        self.assertEqual(
            "NHUpdateManager\\NHUpdateManager.exe" in unsigned, not check_release.is_signed(program)
        )
        header = int.from_bytes(program[60:64], "little")
        directory = header + 24 + 112 + 4 * 8
        signed = program[: directory + 4] + b"\x08\0\0\0" + program[directory + 8 :]
        (self.manager / "NHUpdateManager.exe").write_bytes(signed)
        found = check_release.findings(check_release.Release(self.release))
        self.assertNotIn(
            ("NHUpdateManager\\NHUpdateManager.exe", "is not signed"),
            [(finding.path, finding.what) for finding in found],
        )

    def test_string_files_without_texts(self):
        path = "NHUpdateManager\\Config\\NHUpdateManager.de.json"
        for content, keys in (
            (b"no JSON", check_release.STRING_KEYS),
            (b'["KEY_UPDATE_TITLE"]', check_release.STRING_KEYS),
            (b'{"KEY_UPDATE_TITLE": "a", "KEY_FAIL_COMMON_ERROR": ""}', check_release.STRING_KEYS[1:]),
        ):
            with self.subTest(content=content):
                self.put(path.replace("\\", "/"), content)
                self.expect("error", path, "has no text for " + ", ".join(keys))

    def test_an_updater(self):
        self.put("Updater/Updater.exe")
        self.expect("warning", "Updater\\", "is copied over the installed updater")

    def test_folders_of_an_updater(self):
        for name, level in (("App", "error"), ("Config", "warning"), ("NewUpdater", "warning")):
            with self.subTest(name=name):
                self.put(f"Updater/{name}/file.txt")
                self.assertIn(
                    (level, f"Updater\\{name}\\", "is part of the release"),
                    [finding[:3] for finding in self.findings()],
                )
                shutil.rmtree(self.release / "Updater")

    def test_names_that_differ_in_case_only(self):
        self.put("Plugins/Cameras/CAM.dll")
        found = self.findings()
        self.assertEqual(len(found), 1)
        self.assertEqual(found[0].level, "error")
        self.assertIn("only in the case of letters", found[0].what)

    def test_names_that_windows_does_not_have(self):
        character = "has a character in its name that Windows doesn't allow"
        end = "has a name that ends in a dot or a blank"
        device = "has a name that means a device on Windows"
        for name, what in (
            ("a:b.txt", character),
            ("a?.txt", character),
            ("line\nend.txt", character),
            (os.fsdecode(b"\xff.txt"), character),
            ("dot.", end),
            ("blank ", end),
            ("con", device),
            ("LPT1.txt", device),
        ):
            with self.subTest(name=name):
                self.put(f"Plugins/{name}")
                self.expect("error", f"Plugins\\{name}", what)
                (self.release / "Plugins" / name).unlink()
        self.put("Plugins/console.txt")
        self.put("Plugins/com10.txt")
        self.assertEqual(self.findings(), [])

    def test_a_path_that_is_too_long_for_others(self):
        place = len(check_release.USUAL_PLACE)
        path = "Plugins/" + "x" * (259 - place - len("Plugins/"))
        self.put(path)
        self.assertEqual(self.findings(), [])
        self.put(path + "y")
        windows_path = check_release.USUAL_PLACE
        self.expect(
            "warning",
            (path + "y").replace("/", "\\"),
            f"has a path of 260 characters in {windows_path}",
        )

    def test_links(self):
        (self.release / "Plugins" / "More").symlink_to("Cameras")
        self.expect("error", "Plugins\\More", "is a link to a folder")
        (self.release / "Plugins" / "More").unlink()
        (self.release / "Plugins" / "more.dll").symlink_to("Cameras/cam.dll")
        self.expect("warning", "Plugins\\more.dll", "is a link to a file")

    def test_empty_folders(self):
        (self.release / "Plugins" / "Empty" / "Emptier").mkdir(parents=True)
        self.expect("warning", "Plugins\\Empty\\", "has no file")

    def test_what_is_left_over(self):
        for name in ("Thumbs.db", ".gitignore", "cam.dll.debug", "cam.pdb"):
            with self.subTest(name=name):
                self.put(f"Plugins/{name}")
                self.expect("warning", f"Plugins\\{name}", "looks left over")
                (self.release / "Plugins" / name).unlink()


def watched(rule):
    def findings(release):
        for finding in rule(release):
            unbroken_rules.discard(rule.__name__)
            yield finding

    return findings


unbroken_rules = {rule.__name__ for rule in check_release.RULES}
check_release.RULES = [watched(rule) for rule in check_release.RULES]
result = unittest.main(exit=False).result
if unbroken_rules:
    print("No release here breaks these rules:", *sorted(unbroken_rules))
sys.exit(not result.wasSuccessful() or bool(unbroken_rules))
