#!/usr/bin/env bash
# Includes that point the wrong way are found, each by itself, and right ones are not:
# include_direction_test.sh REPOSITORY
set -eu
check=$1/tools/lib/check_includes
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

# put FILE INCLUDE...: a file with these includes, its own header first where it has one.
put() {
  local file=$tree/$1 include
  shift
  mkdir -p "$(dirname "$file")"
  printf '// A file.\n\n' >"$file"
  for include in "$@"; do printf '#include %s\n' "$include" >>"$file"; done
}

# A tree like the product's, with every direction that is right.
put base/windows.h '<windows.h>'
put base/paths.h '<string>'
put base/registry.cpp '"base/registry.h"' '"base/windows.h"'
put log/log.h '"base/paths.h"'
put text/string_table.cpp '"text/string_table.h"' '"log/log.h"' '"base/paths.h"'
put install/folder_copy.cpp '"install/folder_copy.h"' '"text/string_table.h"' '"log/log.h"' '"base/paths.h"'
put update/child_launch.cpp '"update/child_launch.h"' '"install/folder_copy.h"' '"base/windows.h"'
put update/self_update.cpp '"app/manager_center.h"' '"update/child_launch.h"'
put app/program.cpp '"app/program.h"' '"update/child_launch.h"' '"install/folder_copy.h"' \
  '"text/string_table.h"' '"log/log.h"' '"base/paths.h"'
put log_library/logger.cpp '"log_library/logger.h"' '"base/windows.h"' '"base/unique_handle.h"'
put examples/host/windows_api.h '<windows.h>'
put examples/host/helper.cpp '"windows_api.h"' '<vector>'
put tests/unit/some_test.cpp '"app/program.h"' '"tests/support/files.h"'

"$check" "$tree" || { echo "Right includes are complained about."; exit 1; }

failed=0
# wrong FILE INCLUDE: that must be found where it stands, and be the only thing that is found.
wrong() {
  local found status=0
  put "$1" '<string>' "$2"
  found=$("$check" "$tree") || status=$?
  local included=${2#[\"<]}
  if [ $status -ne 1 ] || [ "$found" != "$1:4: ${1%%/*}/ may not include ${included%[\">]}" ]; then
    echo "$1 includes $2: ended with $status and said: $found"
    failed=1
  fi
  rm "$tree/$1"
}

wrong base/wrong.cpp '"log/log.h"'
wrong base/wrong.h '"text/utf8.h"'
wrong log/wrong.cpp '"text/utf8.h"'
wrong text/wrong.cpp '"install/folder_copy.h"'
wrong install/wrong.cpp '"update/child_launch.h"'
wrong update/wrong.cpp '"app/program.h"'
# Angle brackets are no way around the rules.
wrong base/wrong.cpp '<app/program.cpp>'
# The way up is for the workflows only, and leads to one header only.
wrong update/wrong.cpp '"app/manager_center.h"'
wrong update/update.cpp '"app/program.h"'
wrong text/wrong.cpp '"app/manager_center.h"'
wrong install/wrong.cpp '"app/manager_center.h"'
# Nothing of the product uses the tests, or the log library's sources.
wrong app/wrong.cpp '"tests/support/files.h"'
wrong base/wrong.h '"tests/support/files.h"'
wrong log/wrong.cpp '"log_library/logger.h"'
# The log library may use a few headers of the program that both share, but none of these.
wrong log_library/wrong.cpp '"base/registry.h"'
wrong log_library/wrong.cpp '"log/log.h"'
wrong log_library/wrong.cpp '"app/program.h"'
wrong log_library/wrong.cpp '"tests/support/files.h"'
# Without a folder an include doesn't show whose file it means.
wrong text/wrong.cpp '"string_table.h"'
# An example is somebody else's program.
wrong examples/host/wrong.cpp '"base/paths.h"'
wrong examples/host/wrong.cpp '<base/paths.h>'
wrong examples/host/wrong.cpp '"../../base/paths.h"'
wrong examples/host/wrong.cpp '"paths.h"'
# Nor does the product use it.
wrong base/wrong.cpp '"examples/host/windows_api.h"'

exit $failed
