"""The example of a host decides about each exit code of docs/calling.md, and about no other:
host_example_page_test.py REPOSITORY
"""

import pathlib
import re
import sys

MODES = {
    "-download": "kDownload",
    "-update": "kUpdate",
    "-self_update": "kSelfUpdate",
    "-final_update": "kFinalUpdate",
    # The installer starts it, not the product.
    "-install": None,
}


def codes_of_page(text):
    table = text.split("## Exit codes, mode by mode")[1].split("\n## ")[0]
    mode = None
    for mode_cell, code_cell in re.findall(r"(?m)^\| ?(`[^|]*`)? ?\| ([\d, ]+) \|", table):
        mode = MODES[mode_cell.strip("`")] if mode_cell else mode
        if mode:
            yield from ((mode, int(code)) for code in code_cell.split(","))


def codes_of_example(text):
    return ((mode, int(code)) for mode, code in re.findall(r"Row\{Mode::(\w+), (\d+),", text))


repository = pathlib.Path(sys.argv[1])
page = set(codes_of_page((repository / "docs/calling.md").read_text(encoding="utf-8")))
example = set(codes_of_example((repository / "examples/host/advice.cpp").read_text(encoding="utf-8")))
for mode, code in sorted(page ^ example):
    missing = "the example" if (mode, code) in page else "docs/calling.md"
    print(f"{missing} has no code {code} of {mode}")
sys.exit(page != example or len(page) < 20)
