#!/usr/bin/env bash
# A program that fails under Wine keeps its exit code, and what is known about it is shown, also what
# Wine's server says; one that doesn't fail is shown as it is: run_in_wine_test.sh REPOSITORY
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/tools/lib" "$tree/build/wine/template/dosdevices"
touch "$tree"/build/wine/template/{.ready,system.reg,user.reg}

printf '%s\n' '#!/bin/sh' '[ "$1" = -p60 ] && echo "No room." >&2' 'exit 1' >"$tree/wineserver"
printf '%s\n' '#!/bin/sh' 'case $1 in *bad.exe) echo "So it goes."; exit 53 ;; esac' >"$tree/wine"
chmod +x "$tree/wine" "$tree/wineserver"
cp "$1/tools/lib/run_in_wine" "$tree/tools/lib"
sed -e "s|^nhupdate_wine=.*|nhupdate_wine=$tree/wine|" \
  -e "s|^nhupdate_wineserver=.*|nhupdate_wineserver=$tree/wineserver|" \
  -e "s|^nhupdate_memory=.*|nhupdate_memory=$tree/nowhere|" "$1/tools/lib/wine.sh" >"$tree/tools/lib/wine.sh"

failed=0
# expect PROGRAM CODE LINE...
expect() {
  local program=$1 code=0 said
  said=$("$tree/tools/lib/run_in_wine" "$tree/$program" 2>&1) || code=$?
  [ $code -eq "$2" ] || { echo "$program ends with $code, not with $2."; failed=1; }
  shift 2
  [ "$said" = "$(printf '%s\n' "$@")" ] || { echo "$program: \"$said\""; failed=1; }
}
unset NHUPDATE_WINE_FOLDER NHUPDATE_LANE
expect good.exe 0 ''
expect bad.exe 53 'So it goes.' 'bad.exe ended with 53.' "Wine's server: No room."
exit $failed
