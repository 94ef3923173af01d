"""tools/test NAME takes what NAME needs and nothing else: choose_tests_test.py REPOSITORY"""

import pathlib
import sys
import tempfile

from planted_mistakes import load, said

choose = load(pathlib.Path(sys.argv[1]) / "tools/lib/choose_tests").main

SOURCES = {
    "json_test.cpp": "TEST(JsonTest, IsRead) {\n",
    "copy_test.cpp": """TEST_F(CopyTest, CopiesFiles) {
TEST_F(CopyTestWithANameThatIsLongerThanALine,
       CopiesFolders) {
TEST_P(ModesTest, IsChosen) {
INSTANTIATE_TEST_SUITE_P(AllModes, ModesTest, testing::Values(1, 2));
""",
    "chain_test.cpp": "TEST_F(ChainTest, Runs) {\n",
    "shipped_test.cpp": "TEST(ShippedTest, IsWhole) {\n",
}
EXECUTABLES = (
    ("host", "json_tests", "portable", "unit", "Portable.", "json_test.cpp"),
    ("mingw-release", "json_tests", "unit", "unit", "", "json_test.cpp"),
    ("mingw-release", "copy_tests", "unit", "unit", "", "copy_test.cpp"),
    ("mingw-release", "chain_tests", "end_to_end", "e2e", "", "chain_test.cpp"),
    ("mingw-release", "shipped_tests", "unit", "unit", "", "shipped_test.cpp"),
)
DEMO = """add_test([=[DemoTest.Ends]=] "/somewhere/demo")
set_tests_properties([=[DemoTest.Ends]=] PROPERTIES  LABELS "tools" TIMEOUT "400")
"""
FORMAT = """add_test([=[FormatCheck.A]=] "/somewhere/compiler")
set_tests_properties([=[FormatCheck.A]=] PROPERTIES  LABELS "unit" TIMEOUT "60")
"""

COPY = ["build mingw-release copy_tests", "lane unit"]
JSON_ON_HOST = "build host json_tests"
JSON = "build mingw-release json_tests"
CHAIN = ["build mingw-release chain_tests", "lane e2e", "package"]
SHIPPED = "build mingw-release shipped_tests"
CHOICES = {
    "copy_tests": COPY,
    "CopyTest": [*COPY, "select"],
    r"^CopyTest\.Copies": [*COPY, "select"],
    "LongerThanALine.CopiesFolders": [*COPY, "select"],
    "AllModes/ModesTest.IsChosen/": [*COPY, "select"],
    # The host's build only for what is tested there too.
    "JsonTest": [JSON_ON_HOST, JSON, "lane unit", "select"],
    "Portable": [JSON_ON_HOST, "select"],
    "portable": [JSON_ON_HOST],
    # The package only for those that look at it.
    "ChainTest": [*CHAIN, "select"],
    "end_to_end": CHAIN,
    "ShippedTest": [SHIPPED, "lane unit", "package", "select"],
    "tools": ["package"],
    "DemoTest": ["package", "select"],
    "FormatCheck": ["select"],
    "unit": [JSON, *COPY, SHIPPED, "package"],
}


REFUSALS = {
    "NoSuchTest": 'No test is called "NoSuchTest".',
    "Copy(": '"Copy(" is no regular expression',
}

errors = []
with tempfile.TemporaryDirectory() as folder:
    tree = pathlib.Path(folder)
    build = tree / "build"

    def put(file, text):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def expect(is_right, name, is_what):
        if not is_right:
            errors.append(f"{name}: {is_what}")

    for name, text in SOURCES.items():
        put(tree / name, text)
    # As CMake describes them.
    for preset, name, ring, lane, prefix, source in EXECUTABLES:
        put(build / preset / "test_executables" / f"{name}.txt",
            f"ring {ring}\nlane {lane}\nprefix {prefix}\nprogram {tree}/{name}.exe\n"
            f"timeout 60\ntests {tree}/{preset}/{name}[1]_include.cmake\nsource {tree}/{source}\n")
    put(build / "mingw-release/tests/tools/CTestTestfile.cmake", DEMO + FORMAT)

    for name, wanted in CHOICES.items():
        status, output = said(choose, build, name)
        expect((status, sorted(output.splitlines())) == (0, sorted(wanted)), name, output)
    copy_list = f'include("{tree}/mingw-release/copy_tests[1]_include.cmake")\n'
    # ctest reads the lists of the chosen tests only.
    for name, wanted in (("CopyTest", copy_list), ("DemoTest", DEMO)):
        said(choose, build, name)
        found = (build / "CTestTestfile.cmake").read_text(encoding="utf-8")
        expect(found == wanted, name, found)
    for name, message in REFUSALS.items():
        status, output = said(choose, build, name)
        expect(status == 1 and message in output, name, output)
print(*errors, sep="\n")
sys.exit(bool(errors))
