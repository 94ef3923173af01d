"""Links between the pages lead to pages and titles that there are: page_links_test.py REPOSITORY"""

import pathlib
import re
import sys

repository = pathlib.Path(sys.argv[1])


def anchor(title):
    return re.sub(r"[^\w\- ]", "", title.lower()).strip().replace(" ", "-")


def titles(page):
    text = re.sub(r"(?ms)^ *```.*?^ *```", "", page.read_text(encoding="utf-8"))
    return {anchor(title) for title in re.findall(r"(?m)^#+ (.*)", text)}


broken = []
count = 0
for page in sorted([*repository.glob("*.md"), *repository.glob("docs/*.md"), *repository.glob("examples/*/*.md")]):
    for target, title in re.findall(r"\]\(([^)#\s]*)#?([^)\s]*)\)", page.read_text(encoding="utf-8")):
        count += 1
        file = page.parent / target if target else page
        if not file.exists():
            broken.append(f"{page.name}: there is no {target}")
        elif title and title not in titles(file):
            broken.append(f"{page.name}: {file.name} has no title for #{title}")
print(*broken, sep="\n")
sys.exit(bool(broken) or count < 50)
