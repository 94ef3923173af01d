#!/usr/bin/env python3
"""How much memory the program takes at most: memory_bench.py WINE PROGRAMS PRODUCT PAIRS [NAME...]

The arguments are those of start_bench.py. Counted is what of the process is in memory at the same
time, Wine's part of it included, which is most of what the rival takes. Prints rows of their own
kind, for tools/lib/bench_table."""
import json
import pathlib
import shutil
import sys

sys.dont_write_bytecode = True

from wine_run import WITH_COM, usage_of  # noqa: E402

wine, programs, product = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
pairs = int(sys.argv[4])
wanted = sys.argv[5:]

manager = product / "NHUpdateManager/NHUpdateManager.exe"
text_file = product / "NHUpdateManager/Config/NHUpdateManager.en.json"
staged = product / "Updater/App"


def peak(command, exit_code):
    """In MiB."""
    return usage_of([wine, *command], exit_code).ru_maxrss / 1024


def stage_large_product():
    for folder in range(100):
        path = staged / f"folder {folder}"
        path.mkdir(parents=True, exist_ok=True)
        for number in range(100):
            (path / f"file {number}.txt").write_bytes(b"." * 100)


def write_large_text_file():
    size = 1 << 30
    with open(text_file, "wb") as file:
        file.write(b'{"KEY_UPDATE_TITLE":"')
        block = b"x" * (1 << 20)
        while file.tell() + len(block) < size:
            file.write(block)
        file.write(b'"}')


def compare(name, what, options, exit_code, prepare):
    if wanted and not any(part in name for part in wanted):
        return
    own, rival = [], []
    for _ in range(pairs):
        prepare()
        own.append(peak([manager, *options], exit_code))
        rival.append(peak([programs / "same_imports.exe", "com"], 0))
    print(json.dumps({"name": name, "what": what, "rival": WITH_COM,
                      "own_mib": own, "rival_mib": rival}), flush=True)


text_as_shipped = text_file.read_bytes()
compare("memory_start", "start without a switch", [], 0, lambda: None)
compare("memory_final_update", "-final_update to 10,000 files in 100 folders", ["-final_update"], 0,
        stage_large_product)
compare("memory_string_file", "-download without an updater, with a string file of 1 GiB",
        ["-download"], 14, write_large_text_file)
text_file.write_bytes(text_as_shipped)
shutil.rmtree(product / "Updater", ignore_errors=True)
