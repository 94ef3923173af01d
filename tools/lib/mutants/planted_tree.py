"""The copy of the sources in which the faults are planted, and its build."""

import os
import re
import shutil
import subprocess
import sys

from candidates import FOLDERS
from planting import can_be_chosen_at_run_time, faults_at, give_numbers, planted_source

_PRODUCT = f"(?:{'|'.join(FOLDERS)})"
_PLACE = re.compile(rf"(?:^|[\s/])({_PRODUCT}/\w+\.(?:h|cpp)):(\d+)")
_ERROR = re.compile(r":\d+(?::\d+)?: (?:fatal )?error: ")
_PRESET = "mingw-release"

# Warnings are of no interest there, and nobody looks at it with a debugger.
_OPTIONS_FILE = "cmake/compile_options.cmake"
_OPTIONS = (b"-Werror ", b"-w -O1 -g0 ")


def say(text):
    print(text, file=sys.stderr, flush=True)


class PlantedTree:
    def __init__(self, root, jobs):
        self.root = root
        self.folder = root / "build" / "mutants" / "tree"
        self.build_folder = self.folder / "build" / _PRESET
        self.jobs = jobs
        self.texts = {}  # of the product's files that are not as they were

    def tracked(self, *patterns):
        """The files of the work tree, with what isn't committed."""
        command = ["git", "ls-files", "-z", "--deduplicate", "--cached", "--others"]
        command += ["--exclude-standard", "--", *patterns]
        output = subprocess.run(command, cwd=self.root, check=True, capture_output=True, text=True)
        return [path for path in output.stdout.split("\0") if path and (self.root / path).is_file()]

    def product_files(self):
        return self.tracked(*(f"{folder}/*.{end}" for folder in FOLDERS for end in ("cpp", "h")))

    def copy(self, planted):
        """Copies all but the files that get faults. Writes only what is different, so that only this
        is built afresh."""
        wanted = {"planted.h", *self.tracked()}
        for path in wanted - {"planted.h", *planted}:
            content = (self.root / path).read_bytes()
            self._write(path, content.replace(*_OPTIONS) if path == _OPTIONS_FILE else content)
            shutil.copymode(self.root / path, self.folder / path)
        for found in self.folder.rglob("*"):
            path = found.relative_to(self.folder).as_posix()
            if found.is_file() and not path.startswith("build/") and path not in wanted:
                found.unlink()

    def _write(self, path, content):
        target = self.folder / path
        if not target.is_file() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)

    def configure(self):
        if not (self.build_folder / "build.ninja").exists():
            command = ["cmake", "--preset", _PRESET]
            subprocess.run(command, cwd=self.folder, check=True, stdout=subprocess.DEVNULL)

    def build(self, targets):
        """Returns what was wrong; nothing when it is built."""
        command = ["ninja", "-C", self.build_folder, "-j", str(self.jobs), "-k", "0", *targets]
        result = subprocess.run(command, capture_output=True, text=True, errors="replace")
        return result.stdout + result.stderr if result.returncode else ""

    # --- faults that are chosen at run time

    def plant(self, chosen, sources, names):
        """Writes the sources with all faults that can be chosen at run time, and builds these test
        executables or all. Returns the faults that can't, and those that don't compile."""
        # What the compiler has refused before, so that it need not be told again.
        refused_file = self.folder.parent / "refused.txt"
        refused = set(refused_file.read_text().splitlines()) if refused_file.exists() else set()
        give_numbers(chosen)
        runtime = [f for f in chosen if can_be_chosen_at_run_time(f) and f.key() not in refused]
        single, rejected = self._sort_out([fault for fault in chosen if fault not in runtime])
        header = (self.root / "tools/lib/mutants/planted.h").read_bytes()
        self.copy(sources)
        self._write("planted.h", header)
        for _ in range(20):
            self.write_planted(runtime, sources)
            self.configure()
            errors = self.build([f"nhupdate_{name}" for name in ("program", "log_library")])
            errors = errors or self.build([*(names or self.test_executables()), "desktop_keeper"])
            if not errors:
                return single, rejected
            blamed = self._blame(errors, runtime)
            if not blamed:
                raise SystemExit(errors[-4000:] + "\nNo fault is to blame for this.")
            wrong = [fault for fault in runtime if fault.number in blamed]
            say(f"{len(blamed)} faults don't compile where they are to be chosen at run time")
            with refused_file.open("a", encoding="utf-8") as file:
                file.writelines(fault.key() + "\n" for fault in wrong)
            runtime = [fault for fault in runtime if fault not in wrong]
            more_single, more_rejected = self._sort_out(wrong)
            single += more_single
            rejected += more_rejected
        raise SystemExit("There is no end of errors.")

    def _sort_out(self, faults):
        """What isn't constant any more when it is chosen at run time can still be built by itself;
        where the types don't fit nothing can."""
        single, rejected = [], []
        for fault in faults:
            is_constant = fault.unit.kind in ("constant", "plain") or fault.unit.is_constexpr
            (single if is_constant or fault.edit.is_fixed else rejected).append(fault)
            fault.number = 0
        return single, rejected

    def write_planted(self, runtime, sources):
        planted = {}
        for fault in runtime:
            planted.setdefault(fault.path, []).append(fault)
        for path, source in sources.items():
            text = source.text
            if path in planted:
                text = planted_source(path, source, planted[path])
            self.texts[path] = text
            self._write(path, text.encode())

    def _blame(self, errors, runtime):
        """The numbers of the faults that the compiler's complaints are about."""
        blamed = set()
        for message in re.split(r"\n(?=FAILED: )", errors):
            for line in filter(_ERROR.search, message.splitlines()):
                blamed |= self._blame_for(line, runtime)
        # At last all definitions that aren't constant any more.
        return blamed or {fault.number for fault in runtime if fault.unit.is_constexpr}

    def _blame_for(self, line, runtime):
        if "planted::At" in line:
            # A constant of a class whose members begin with something that isn't constant any more.
            members = (f for f in runtime if f.unit.is_member and not f.unit.is_constexpr)
            return {fault.number for fault in members if f"/{fault.folder}/" in line}
        found = _PLACE.search(line)
        path = found[1] if found and found[1] in self.texts else ""
        named = {
            fault.number
            for fault in runtime
            if fault.unit.is_constexpr and re.search(rf"\b{fault.unit.name}’ is not usable", line)
        }
        # A file of the tests can be called like one of the product.
        if named or not path or f"tests/unit/{path}" in line:
            return named
        return faults_at(self.texts[path], int(found[2]))

    # --- single ones

    def put(self, fault):
        self._write(fault.path, fault.changed_source().encode())

    def put_back(self, fault):
        self._write(fault.path, self.texts[fault.path].encode())

    def is_fault_itself_rejected(self, fault, errors):
        """True when the compiler complains about the very line, and not about what depends on it."""
        return any(
            path == fault.path and abs(int(number) - fault.line) <= fault.minus.count(";") + 3
            for line in errors.splitlines()
            if _ERROR.search(line)
            for path, number in _PLACE.findall(line)
        )

    # --- the tests

    def failed_compiler_check(self):
        """The first of the unit tests that have no executable, but a compiler that must refuse
        something, which fails with the sources as they are."""
        command = ["ctest", "--test-dir", self.build_folder, "-R", "^FormatCheck[.]", "--no-tests=error"]
        result = subprocess.run([*command, "-j", str(self.jobs)], capture_output=True, text=True)
        failed = re.search(r"^\s*\d+ - (\S+) \(Failed\)", result.stdout, re.MULTILINE)
        if result.returncode and not failed:
            raise SystemExit(result.stdout[-4000:] + result.stderr)
        return failed[1] if failed else ""

    def test_executables(self):
        """The executables of the unit tests by name, with the folder of the product they are for."""
        found = {}
        for file in sorted((self.build_folder / "test_executables").glob("*.txt")):
            lines = file.read_text(encoding="utf-8").splitlines()
            if "ring unit" not in lines:
                continue
            source = next(line for line in lines if line.startswith("source "))
            parts = os.path.relpath(source.removeprefix("source "), self.folder / "tests").split("/")
            found[file.stem] = parts[1] if parts[0] == "unit" else parts[0]
        return found

    def executable(self, name):
        return next(self.build_folder.glob(f"bin/**/{name}.exe"))
