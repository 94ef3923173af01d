#!/usr/bin/env python3
"""Writes C source that imports what an executable imports: list_imports.py OBJDUMP EXECUTABLE OUTPUT

The C runtime's functions are left out: the compiler knows other types for these, and every program
imports them."""
import pathlib
import re
import subprocess
import sys

objdump, executable, output = sys.argv[1:]
text = subprocess.run([objdump, "-p", executable], check=True, capture_output=True, text=True).stdout
names = []
library = ""
for line in text.splitlines():
    if match := re.match(r"\s*DLL Name: (\S+)", line):
        library = match[1].lower()
    elif (match := re.match(r"\s+[0-9a-f]+\s+\d+\s+(\w+)\s*$", line)) and library != "msvcrt.dll":
        names.append(match[1])
if len(names) < 50:
    sys.exit("That is not the program's list of imports.")
lines = [f"__declspec(dllimport) void {name}(void);" for name in names]
lines.append("static const void* const volatile imports[] = {")
lines += [f"    (const void*)&{name}," for name in names]
lines += ["};", "const void* const volatile* SameImports(void);"]
lines.append("const void* const volatile* SameImports(void) { return imports; }")
pathlib.Path(output).write_text("\n".join(lines) + "\n", encoding="utf-8")
