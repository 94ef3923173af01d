#!/usr/bin/env python3
"""How many instructions a unit of JSON costs: instruction_bench.py PROGRAMS [NAME...]

Counted by valgrind in the reader alone, for a long text and for a short one. Unlike a time the count
doesn't depend on the machine's caches, nor on what else it does, so one run of each is enough. Prints
rows of their own kind, for tools/lib/bench_table."""
import json
import pathlib
import re
import subprocess
import sys

program = pathlib.Path(sys.argv[1]) / "read_json"
wanted = sys.argv[2:]

KI = 1024
LONG, SHORT = 16 * KI * KI, 64 * KI


def instructions_per_unit(text, units):
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
               "--toggle-collect=nhupdate::ParseValue*", "--toggle-collect=nhupdate::FreeValue*",
               program, text, str(units)]
    run = subprocess.run(command, capture_output=True, encoding="utf-8", check=False)
    count = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or count is None or int(count[1]) == 0:
        sys.exit(f"{command} has counted nothing:\n{run.stderr}")
    return int(count[1]) / units


for text, kind in [("string_file", "a string file"), ("flat_array", "a flat array of numbers"),
                   ("nested_objects", "nested objects")]:
    name = f"json_{text}_instructions"
    if not wanted or any(part in name for part in wanted):
        print(json.dumps({"name": name, "what": f"JSON: {kind}, 16 Mi units",
                          "rival": "the same reader, 64 Ki units", "target": 1.1,
                          "own_instructions": instructions_per_unit(text, LONG),
                          "rival_instructions": instructions_per_unit(text, SHORT)}), flush=True)
