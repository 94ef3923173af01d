"""The page of what is relied on about Windows tells of what is shipped, no more and no less, and
what is wrong with it is found: reliances_page_test.py REPOSITORY"""

import pathlib
import sys

from planted_mistakes import finds_each

PAGE = "docs/windows.md"
COPY_ROW = r"^\| `CopyFileW` \|.*\n"
SLEEP_TEST = r"^(\| `Sleep` \|.*)WaitEndToEndTest"
MISTAKES = [
    (f"{PAGE}: {complaint}", PAGE, expression, replacement)
    for complaint, expression, replacement in (
        ("CopyFileW is called and imported and has no row", COPY_ROW, ""),
        ("CopyFileW has two rows", COPY_ROW, r"\g<0>\g<0>"),
        ("MoveFileW has a row and is not imported and called", COPY_ROW,
         r"\g<0>| `MoveFileW` | a | b | PlaceTest | c |\n"),
        ("the row of Sleep has an empty cell or not 5 of them", r"^\| `Sleep` \| [^|]*",
         "| `Sleep` | "),
        ("Sleep: there is no test suite NoSuchTest", SLEEP_TEST, r"\1NoSuchTest"),
        ("Sleep: tests/reliances doesn't ask about it", SLEEP_TEST, r"\1`reliances`"),
        ("memcpy is imported for the compiler's runtime and not in its list", "`memcpy`, ", ""),
        ("lstrlenW is in the list of the runtime and not imported", "`memcpy`",
         r"`lstrlenW`, \g<0>"),
        ("Sleep is called by our code, not by the runtime alone", "`memcpy`", r"`Sleep`, \g<0>"),
        ("RtlGetNothing is said to be looked up by its name and isn't", "RtlGetVersion",
         "RtlGetNothing"),
    )
] + [
    (f"{PAGE}: GetLocalTime has a row and is not imported and called", "install/registration.cpp",
     "::GetLocalTime", "GetLocalTime_"),
    (f"{PAGE}: TlsGetValue is called and imported and has no row", "base/console.cpp",
     "^namespace nhupdate {",
     r"\g<0>\ninline void* Value() { return ::TlsGetValue(0); }"),
]

repository = pathlib.Path(sys.argv[1])
package = repository / "build/package/NHUpdateManager"
images = [package / "NHUpdateManager.exe", package / "NSWLogDynamic64U.dll"]
sys.exit(not finds_each(repository, "check_reliances", [images], MISTAKES))
