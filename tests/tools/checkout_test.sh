#!/usr/bin/env bash
# A clone of somebody whose git writes carriage returns has none: checkout_test.sh REPOSITORY
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
git clone --quiet --config core.autocrlf=true --config core.eol=crlf "$1" "$tree/clone"
cd "$tree/clone"

failed=0
# What the index has, what the folder has, the attributes, and the file.
while IFS= read -r line; do
  case $line in
    *w/crlf* | *w/mixed*) echo "$line"; failed=1 ;;
  esac
done < <(git ls-files --eol -- ':!tests/**/golden/*' ':!tests/fuzz/json_reader_seeds/*')
[ -z "$(git status --short)" ] || { git status --short; failed=1; }

# As they are, also with the ends of lines of Windows in them.
printf 'a\r\nb\n' >tests/unit/update/golden/Some.Test.txt
git add tests/unit/update/golden/Some.Test.txt 2>/dev/null
git cat-file blob :tests/unit/update/golden/Some.Test.txt |
  cmp - tests/unit/update/golden/Some.Test.txt || failed=1

./tools/check_release . >/dev/null || [ $? -eq 1 ] || failed=1
bash -n tools/test || failed=1
exit $failed
