#!/usr/bin/env bash
# tools/format gives the layout that tools/lint asks for, tools/lint looks at the files that it is
# given, and names what puts right what it finds: format_and_lint_test.sh REPOSITORY
set -eu
repository=$(cd "$1" && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/tests" "$tree/base" "$tree/tools/lib"
cp "$repository"/tools/{format,lint} "$tree/tools/"
cp "$repository"/tools/lib/{packages.sh,build.sh,check_includes,check_golden} "$tree/tools/lib/"
cp "$repository/.clang-format" "$tree/"
cd "$tree"
export GIT_AUTHOR_NAME=test GIT_AUTHOR_EMAIL=test GIT_COMMITTER_NAME=test GIT_COMMITTER_EMAIL=test
git init --quiet
printf 'int main() {}\n' >committed.cpp
git add . && git commit --quiet --message=test

failed=0
expect() { # expect STATUS TEXT COMMAND...
  local wanted=$1 text=$2 said status=0
  shift 2
  said=$("$@" 2>&1) || status=$?
  [ $status -eq "$wanted" ] && grep -qF -- "$text" <<<"$said" ||
    { printf '%s\nended with %s and said:\n%s\n' "$*" $status "$said"; failed=1; }
}

expect 0 'Nothing to complain about' tools/lint --quick
expect 0 'No source has been changed.' tools/format

printf 'int  main( ) { }\n' >new.cpp
expect 1 'tools/format FILE... puts the layout right.' tools/lint --quick
expect 1 'tools/format FILE... puts the layout right.' tools/lint new.cpp
expect 0 'Nothing to complain about in 1 sources and 0 scripts.' tools/lint committed.cpp
expect 0 'Formatted: new.cpp' tools/format
expect 0 'Nothing to complain about' tools/lint --quick
printf 'int  main( ) { }\n' >new.cpp
expect 0 '1 of 1 sources had another layout.' tools/format new.cpp
expect 0 '0 of 1 sources had another layout.' tools/format new.cpp
expect 1 'only .cpp and .h' tools/format .clang-format

printf '#!/usr/bin/env bash\ncd $1\n' >script
expect 1 'Each message of shellcheck has a page' tools/lint script
expect 0 'Nothing to complain about' tools/lint new.cpp
expect 2 'there is no such file' tools/lint nothing.cpp
expect 2 'tools/lint [--quick | FILE...]' tools/lint --fast
printf 'A page:\n\n#!/usr/bin/env bash\ncd $1\n' >page.md
rm script
expect 0 'Nothing to complain about' tools/lint --quick

printf '#include "app/program.h"\n' >base/wrong.cpp
expect 1 'docs/architecture.md, "The layers"' tools/lint --quick
rm base/wrong.cpp
mkdir tests/golden
touch tests/nothing.cpp tests/golden/NoTest.Owns.txt
expect 1 'rename it with its test, or delete it' tools/lint --quick
exit $failed
