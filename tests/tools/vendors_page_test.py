"""docs/vendors.md against the sources and the packaged files: what is started, what is written to
the registry, which imports are told of: vendors_page_test.py REPOSITORY PACKAGED_FOLDER"""

import pathlib
import re
import subprocess
import sys
import unittest

PACKAGED_FOLDER = pathlib.Path(sys.argv.pop())
REPOSITORY = pathlib.Path(sys.argv.pop())
PAGE = (REPOSITORY / "docs/vendors.md").read_text(encoding="utf-8")

# What scanners look at: other processes, threads and memory, debugging, time, rights.
SUSPICIOUS = re.compile(
    r"^((Create|Open|Terminate|Debug\w*)Process\w*|\w*Remote\w*|(Get|Set)ThreadContext|"
    r"(Suspend|Resume)Thread|SetThreadPriority|Set\w*AffinityMask|Virtual\w+|WriteProcessMemory|"
    r"ReadProcessMemory|K32\w+|\w*EnumProcesses|QueryFullProcessImageNameW|\w*VectoredException\w*|"
    r"IsDebuggerPresent|CheckRemoteDebuggerPresent|OutputDebugString\w|RaiseException|"
    r"SetUnhandledExceptionFilter|SetSystemTime\w*|GetSystemTimeAdjustment|AdjustTokenPrivileges|"
    r"SetWindowsHook\w+|GetAsyncKeyState|ShellExecute\w*|WinExec|Crypt\w+|SetFileInformationByHandle|"
    r"GetFinalPathNameByHandleW|SetDefaultDllDirectories|LoadLibrary\w*|RtlVirtualUnwind|"
    r"ConvertStringSecurityDescriptor\w+|(Set|Create)Service\w*|Reg\w*(Save|Restore|Delete)\w*)$"
)
# Of the program's own process only.
HARMLESS = {"OpenProcessToken"}


def section(title):
    return re.search(rf"(?s)\n## {re.escape(title)}\n(.*?)(\n## |$)", PAGE)[1]


def imports(file):
    listing = subprocess.run(
        ["x86_64-w64-mingw32-objdump", "-p", PACKAGED_FOLDER / file],
        capture_output=True, text=True, check=True,
    ).stdout
    return set(re.findall(r"(?m)^\t[0-9a-f]+\t +\d+ +(\w+)$", listing))


def told_imports():
    """function -> files that it is told of for"""
    told = {"exe": set(), "DLL": set()}
    for line in section("Unusual imports").splitlines():
        cells = line.strip("| ").split(" | ")
        if len(cells) == 3 and cells[0].startswith("`"):
            for kind in ("exe", "DLL") if cells[1] == "both" else (cells[1],):
                told[kind] |= set(re.findall(r"`(\w+)`", cells[0]))
    return told


class VendorsPageTest(unittest.TestCase):
    def test_imports(self):
        for kind, file in (("exe", "NHUpdateManager.exe"), ("DLL", "NSWLogDynamic64U.dll")):
            with self.subTest(file=file):
                imported = imports(file)
                self.assertIn("CloseHandle", imported)
                told = told_imports()[kind]
                self.assertEqual(told - imported, set(), "told of, but not imported")
                suspicious = {name for name in imported if SUSPICIOUS.match(name)}
                self.assertEqual(
                    suspicious - told - HARMLESS, set(), "imported, but not told of"
                )

    def test_processes_started(self):
        catalog = (REPOSITORY / "update/launch_catalog.h").read_text(encoding="utf-8")
        started = {
            "".join(re.findall(r'L"((?:[^"\\]|\\.)*)"', call)).replace('\\"', '"').replace("%d", "<id>")
            for call in re.findall(r"(?s)CLaunchParameters::\w+\((.*?)\),\n", catalog)
        }
        self.assertGreater(len(started), 5)
        told = set()
        for line in section("Processes started").splitlines():
            cells = line.strip("|").split(" | ")
            if len(cells) == 3 and cells[2].strip().startswith("`-"):
                told.add(re.search(r"`(.*?)`", cells[1])[1])
        grant = '"<folder>" /grant "*S-1-5-32-545":(OI)(CI)F /inheritance:e'
        self.assertEqual(told, started | {grant})
        source = (REPOSITORY / "install/folder_access.cpp").read_text(encoding="utf-8")
        self.assertIn(grant.replace("<folder>", "%s").replace('"', '\\"'), source)

    def test_registry_values(self):
        source = (REPOSITORY / "install/registration.cpp").read_text(encoding="utf-8")
        keys = dict(
            (name, text.replace("\\\\", "\\"))
            for name, text in re.findall(r'(?s)wchar_t (k\w+Key)\[\] =\s*L"(.*?)";', source)
        )
        written = {
            (keys[key], value) for key, value in re.findall(r'\{(k\w+Key), L"(\w+)"', source)
        }
        self.assertEqual(len(written), 12)
        told = set()
        for line in section("Registry values").splitlines():
            cells = line.strip("| ").split(" | ")
            if line.startswith("| `SOFTWARE"):
                told |= {(cells[0].strip("`"), value) for value in re.findall(r"`(\w+)`", cells[1])}
        self.assertEqual(told, written)


unittest.main()
