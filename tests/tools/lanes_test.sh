#!/usr/bin/env bash
# A lane shares with the template what nobody changes, and nothing else; those of the tests have their
# scratch folders in memory, and displays of their own: lanes_test.sh REPOSITORY
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
printf '%s\n' '[Environment]' '"TEMP"="C:\\users\\root\\Temp"' '"TMP"="C:\\users\\root\\Temp"' '' \
  '[Other]' '"TEMPER"="even"' >"$template/user.reg"

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

# On a machine with a folder in memory, on one whose folder is too small, and on one without any.
nhupdate_memory=$tree/memory
nhupdate_memory_mb=1
mkdir "$nhupdate_memory"
ensure_lane unit
folder=$(readlink "$tree/wine/unit/dosdevices/t:")
[ -d "$folder" ] && [ "$(dirname "$folder")" = "$nhupdate_memory" ] ||
  complain "unit: drive T: is not in memory but in \"$folder\"."
cmp -s "$tree/wine/unit/user.reg" <(printf '%s\n' '[Environment]' '"TEMP"="T:\\"' '"TMP"="T:\\"' '' \
  '[Other]' '"TEMPER"="even"') || complain "unit: the scratch folders are not on drive T:."
[ "$(readlink "$tree/wine/unit/dosdevices/c:")" = ../drive_c ] || complain "unit: there is no drive C:."
nhupdate_memory_mb=1000000000
ensure_lane faults
nhupdate_memory=$tree/nowhere
ensure_lane e2e
for lane in first faults e2e; do
  [ ! -L "$tree/wine/$lane/dosdevices/t:" ] && cmp -s "$tree/wine/$lane/user.reg" "$template/user.reg" ||
    complain "$lane: its scratch folders should be where they were."
done

# On a machine that has UTC, and on another one.
zones='Software\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones'
write_zones() {
  local zone
  printf '[%s] 1795339535\n' 'Software\\Before'
  for zone in "$@"; do printf '[%s\\\\%s] 1795339535\n"TZI"=hex:3c\n\n' "$zones" "$zone"; done
  printf '[%s] 1795339535\n' "${zones//Time/More}"
}
write_zones 'Tonga Standard Time' 'UTC' 'UTC\\Dynamic DST' 'UTC-02' >"$template/system.reg"
TZ=UTC ensure_lane waits
cmp -s "$tree/wine/waits/system.reg" <(write_zones UTC) || complain "waits: UTC is not the only time zone."
TZ=Asia/Tokyo ensure_lane moments
cmp -s "$tree/wine/moments/system.reg" "$template/system.reg" || complain "moments: a time zone is missing."

mkdir "$tree/bin"
printf '%s\n' '#!/bin/sh' 'echo $$ >&3' 'exec sleep 60 3>&-' >"$tree/bin/Xvfb"
chmod +x "$tree/bin/Xvfb"
display_of() { (DISPLAY=:given; use_display "$1"; echo "$DISPLAY"); }
PATH=$tree/bin:$PATH start_displays e2e waits
servers=("${nhupdate_display_processes[@]}")
[ "$(display_of e2e)" = ":${servers[0]}" ] && [ "$(display_of waits)" = ":${servers[1]}" ] ||
  complain "The lanes' displays are $(display_of e2e) and $(display_of waits), not :${servers[*]}."
[ "$(display_of unit)" = :given ] || complain "unit: there is a display."
[ -z "${DISPLAY:-}" ] || complain "The last display is left to all others."
# Its result is how they have ended.
stop_display || true
! kill -0 "${servers[@]}" 2>/dev/null || complain "The displays are still there."
[ -z "$(find "$tree/wine" -name '*.own' -o -name '*.new')" ] || complain "Something is left over."
exit $failed
