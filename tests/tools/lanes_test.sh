#!/usr/bin/env bash
# A lane shares with the template what nobody changes, and nothing else: lanes_test.sh REPOSITORY
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
export NHUPDATE_WINE_FOLDER=$tree/wine
template=$tree/wine/template
system=drive_c/windows/system32
mkdir -p "$template/$system/drivers/etc" "$template/drive_c/users/root" "$template/dosdevices"
ln -s ../drive_c "$template/dosdevices/c:"
shared=("$system/shell32.dll" "$system/cmd.exe" "$system/drivers/mouse driver.sys")
own=(.ready system.reg drive_c/windows/win.ini "$system/drivers/etc/hosts" drive_c/users/root/game.dll)
for file in "${shared[@]}" "${own[@]}"; do echo "as it was made" >"$template/$file"; done
touch --date=2001-02-03 "$template/system.reg"

. "$1/tools/lib/wine.sh"
ensure_lane first
ensure_lane second

failed=0
complain() { echo "$1"; failed=1; }
for lane in first second; do
  for file in "${shared[@]}"; do
    [ "$tree/wine/$lane/$file" -ef "$template/$file" ] || complain "$lane: $file takes room of its own."
  done
  for file in "${own[@]}"; do
    cmp -s "$tree/wine/$lane/$file" "$template/$file" || complain "$lane: $file is another one."
    [ ! "$tree/wine/$lane/$file" -ef "$template/$file" ] || complain "$lane: $file is the template's."
  done
  # By its time Wine knows whether the prefix is up to date.
  [ "$(stat -c %Y "$tree/wine/$lane/system.reg")" = "$(stat -c %Y "$template/system.reg")" ] ||
    complain "$lane: system.reg has another time."
  [ "$(readlink "$tree/wine/$lane/dosdevices/c:")" = ../drive_c ] || complain "$lane: there is no drive C:."
done
[ -z "$(find "$tree/wine" -name '*.own' -o -name '*.new')" ] || complain "Something is left over."
exit $failed
