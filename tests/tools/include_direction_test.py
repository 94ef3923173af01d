"""Includes that point the wrong way are found, each by itself, and right ones are not:
include_direction_test.py REPOSITORY"""

import pathlib
import sys
import tempfile

from planted_mistakes import load, said

# A tree like the product's, with every direction that is right.
RIGHT = {
    "base/windows.h": ["<windows.h>"],
    "base/paths.h": ["<string>"],
    "base/registry.cpp": ['"base/registry.h"', '"base/windows.h"'],
    "log/log.h": ['"base/paths.h"'],
    "text/string_table.cpp": ['"text/string_table.h"', '"log/log.h"', '"base/paths.h"'],
    "install/folder_copy.cpp": ['"install/folder_copy.h"', '"text/string_table.h"', '"log/log.h"',
                                '"base/paths.h"'],
    "update/child_launch.cpp": ['"update/child_launch.h"', '"install/folder_copy.h"',
                                '"base/windows.h"'],
    "update/self_update.cpp": ['"app/manager_center.h"', '"update/child_launch.h"'],
    "app/program.cpp": ['"app/program.h"', '"update/child_launch.h"', '"install/folder_copy.h"',
                        '"text/string_table.h"', '"log/log.h"', '"base/paths.h"'],
    "log_library/logger.cpp": ['"log_library/logger.h"', '"base/windows.h"',
                               '"base/unique_handle.h"'],
    "examples/host/windows_api.h": ["<windows.h>"],
    "examples/host/helper.cpp": ['"windows_api.h"', "<vector>"],
    "tests/unit/some_test.cpp": ['"app/program.h"', '"tests/support/files.h"'],
}

WRONG = (
    ("base/wrong.cpp", '"log/log.h"'),
    ("base/wrong.h", '"text/utf8.h"'),
    ("log/wrong.cpp", '"text/utf8.h"'),
    ("text/wrong.cpp", '"install/folder_copy.h"'),
    ("install/wrong.cpp", '"update/child_launch.h"'),
    ("update/wrong.cpp", '"app/program.h"'),
    # Angle brackets are no way around the rules.
    ("base/wrong.cpp", "<app/program.cpp>"),
    # The way up is for the workflows only, and leads to one header only.
    ("update/wrong.cpp", '"app/manager_center.h"'),
    ("update/update.cpp", '"app/program.h"'),
    ("text/wrong.cpp", '"app/manager_center.h"'),
    ("install/wrong.cpp", '"app/manager_center.h"'),
    # Nothing of the product uses the tests, or the log library's sources.
    ("app/wrong.cpp", '"tests/support/files.h"'),
    ("base/wrong.h", '"tests/support/files.h"'),
    ("log/wrong.cpp", '"log_library/logger.h"'),
    # The log library may use a few headers of the program that both share, but none of these.
    ("log_library/wrong.cpp", '"base/registry.h"'),
    ("log_library/wrong.cpp", '"log/log.h"'),
    ("log_library/wrong.cpp", '"app/program.h"'),
    ("log_library/wrong.cpp", '"tests/support/files.h"'),
    # Without a folder an include doesn't show whose file it means.
    ("text/wrong.cpp", '"string_table.h"'),
    # An example is somebody else's program.
    ("examples/host/wrong.cpp", '"base/paths.h"'),
    ("examples/host/wrong.cpp", "<base/paths.h>"),
    ("examples/host/wrong.cpp", '"../../base/paths.h"'),
    ("examples/host/wrong.cpp", '"paths.h"'),
    # Nor does the product use it.
    ("base/wrong.cpp", '"examples/host/windows_api.h"'),
)

check = load(pathlib.Path(sys.argv[1]) / "tools/lib/check_includes").main
errors = []
with tempfile.TemporaryDirectory() as folder:
    tree = pathlib.Path(folder)

    def put(name, includes):
        file = tree / name
        file.parent.mkdir(parents=True, exist_ok=True)
        lines = "".join(f"#include {include}\n" for include in includes)
        file.write_text(f"// A file.\n\n{lines}", encoding="utf-8")
        return file

    def expect(wanted, what):
        found = said(check, tree)
        if found != wanted:
            errors.append(f"{what}: ended with {found[0]} and said: {found[1]}")

    for name, includes in RIGHT.items():
        put(name, includes)
    expect((0, ""), "right includes")
    for name, include in WRONG:
        file = put(name, ["<string>", include])
        layer = name.split("/")[0]
        expect((1, f"{name}:4: {layer}/ may not include {include[1:-1]}\n"),
               f"{name} includes {include}")
        file.unlink()
print(*errors, sep="\n")
sys.exit(bool(errors))
