"""The licences in data/NOTICES.txt are those of what is linked in, word for word, as the compiler's
package has them: notices_test.py REPOSITORY"""

import pathlib
import re
import sys

SOURCE = pathlib.Path("/usr/share/doc/mingw-w64-common/copyright")
LICENCES = ("ZPL-2.1", "Lucent")
COPYRIGHTS = {
    "mingw-w64-crt/gdtoa/*": "1997-2001 Lucent Technologies",
}


def words(text):
    return " ".join(text.replace("\n .\n", "\n").split())


notices = words((pathlib.Path(sys.argv[1]) / "data/NOTICES.txt").read_text(encoding="utf-8"))
source = SOURCE.read_text(encoding="utf-8")
missing = []
for licence in LICENCES:
    text = re.search(rf"(?m)^License: {re.escape(licence)}\n((?:[ \t].*\n)+)", source)[1]
    if words("\n" + text) not in notices:
        missing.append(f"the text of {licence}")
for files, holder in COPYRIGHTS.items():
    paragraph = re.search(rf"(?m)^Files: {re.escape(files)}\n(?:[^\n]+\n)*?Copyright: (.*)\n", source)
    if paragraph[1] != holder or holder not in notices:
        missing.append(f"{paragraph[1]}, whose is {files}")
print(*missing, sep="\n")
sys.exit(bool(missing))
