# Wine for the tools: prefixes that are made when they are first needed, one X server that nobody
# sees, and the servers ended again by whoever started them. Sourced.
#
# A lane is a Wine prefix with a server of its own. What runs in one lane sees the processes, the
# registry and the drive of that lane only, so lanes can be used side by side.

nhupdate_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
nhupdate_wine_folder=${NHUPDATE_WINE_FOLDER:-$nhupdate_root/build/wine}
nhupdate_wine=/usr/lib/wine/wine64
nhupdate_wineserver=/usr/lib/wine/wineserver64

export WINEDEBUG=${WINEDEBUG:--all}
# Wine writes file names in the characters of the locale; others don't exist for it. Its language
# is that of Windows.
export LC_ALL=${NHUPDATE_LOCALE:-C.UTF-8}
export WINEDLLOVERRIDES='mscoree,mshtml='

# A setting for what has no use for the machine's fonts, which every program with windows reads. Wine
# keeps those that it has seen when it made a prefix, so none is made with them.
nhupdate_no_fonts=$nhupdate_root/tools/lib/no_fonts.conf

# The lanes of the tests. What runs in a quiet one shows no window: either it never does, or whatever
# would is replaced.
nhupdate_quiet_lanes=(unit log_library faults more_faults cycles)
nhupdate_window_lanes=(e2e restarts waits moments restarts_install more_moments)
nhupdate_test_lanes=("${nhupdate_quiet_lanes[@]}" "${nhupdate_window_lanes[@]}")

# Where a lane of the tests keeps to one processor, the lanes take them by turns, in the order above,
# in which two of them have about the same to do.
# A program and its server take turns too, and to wake somebody on another processor costs more than
# most of what is asked for: on one of them together they are almost twice as fast. In this lane
# several programs write one file, which is worth more when they do it at the same time.
nhupdate_spread_lane=log_library

# keep_to_processor LANE: for this shell and what it starts from here on. Does nothing when that can't
# be had.
keep_to_processor() {
  local key list range ranges index allowed=()
  [ "$1" != "$nhupdate_spread_lane" ] || return 0
  # Such as "0-3,8", of this shell.
  while read -r key list; do
    [ "$key" != Cpus_allowed_list: ] || break
  done </proc/$BASHPID/status
  IFS=, read -ra ranges <<<"$list"
  for range in "${ranges[@]}"; do
    for ((index = ${range%-*}; index <= ${range#*-}; index++)); do allowed+=("$index"); done
  done
  [ ${#allowed[@]} -gt 1 ] || return 0
  for index in "${!nhupdate_test_lanes[@]}"; do
    [ "${nhupdate_test_lanes[index]}" != "$1" ] ||
      taskset --pid --cpu-list "${allowed[index % ${#allowed[@]}]}" $BASHPID >/dev/null 2>&1 || true
  done
}

# Longer than all that is done with one needs, even on a machine under load.
nhupdate_wine_limit='timeout 300'

# Nearly all of a prefix are Wine's own libraries and programs, 700 MB of them, which nothing writes to:
# these are shared by hard links. Whoever wants another one in the place of such a file deletes it
# first. Everything else is the copy's own.
copy_prefix() {
  cp -al "$1" "$2" || return 1
  find "$2" -type f ! \( -path '*/drive_c/windows/*' \( -name '*.dll' -o -name '*.exe' \
    -o -name '*.drv' -o -name '*.nls' -o -name '*.msstyles' -o -name '*.ocx' -o -name '*.sys' \) \) \
    -exec sh -c 'for file; do cp -p "$file" "$file.own" && mv -f "$file.own" "$file" || exit 1; done' \
    sh {} +
}

# The scratch folders of the tests lie in memory where the machine has room for them there, on a drive
# of their own. Nothing is made and deleted as often, and on a disk that takes about as long as all the
# rest: some file systems are slow to use again what has just become free.
nhupdate_memory=/dev/shm
nhupdate_memory_mb=1024

# make_memory_drive PREFIX: T:, for one that is not running. False where there is no room.
make_memory_drive() {
  local free folder
  free=$(df --output=avail --block-size=1M "$nhupdate_memory" 2>/dev/null | tail -n 1)
  [ "${free:-0}" -ge $nhupdate_memory_mb ] && [ -w "$nhupdate_memory" ] || return 1
  folder=$(mktemp -d "$nhupdate_memory/nhupdate.XXXXXX") && ln -s "$folder" "$1/dosdevices/t:"
}

# scratch_to_memory PREFIX: for one that has never been started.
scratch_to_memory() {
  ! make_memory_drive "$1" || sed -i -E 's/^"(TEMP|TMP)"=.*/"\1"="T:\\\\"/' "$1/user.reg"
}

# Every program that starts goes through the time zones that Wine knows until it has found that of the
# machine, which where tests are run is most often one of the last.
# forget_time_zones PREFIX: all but that one. For a prefix that has never been started.
forget_time_zones() {
  [ "$(date +%Z)" = UTC ] || return 0
  awk '/^\[/ { is_forgotten = /\\Time Zones\\/ && !/\\Time Zones\\\\UTC\]/ } !is_forgotten' \
    "$1/system.reg" >"$1/system.new" &&
    touch --reference="$1/system.reg" "$1/system.new" && mv "$1/system.new" "$1/system.reg"
}

# Makes the lane's prefix if there is none. Safe to call from several processes at once.
ensure_lane() {
  local lane=$1
  [ ! -e "$nhupdate_wine_folder/$lane/.ready" ] || return 0
  mkdir -p "$nhupdate_wine_folder"
  (
    flock 9
    if [ ! -e "$nhupdate_wine_folder/template/.ready" ]; then
      rm -rf "$nhupdate_wine_folder/template"
      export WINEPREFIX=$nhupdate_wine_folder/template FONTCONFIG_FILE=$nhupdate_no_fonts
      env -u DISPLAY $nhupdate_wine_limit "$nhupdate_wine" wineboot -i </dev/null >/dev/null 2>&1
      # Without a window manager a managed window takes seconds to close.
      $nhupdate_wine_limit "$nhupdate_wine" reg add 'HKCU\Software\Wine\X11 Driver' \
        /v Managed /d N /f </dev/null >/dev/null 2>&1
      # Which Windows it says it is; Wine's own choice without it.
      [ -z "${NHUPDATE_WINDOWS:-}" ] || $nhupdate_wine_limit "$nhupdate_wine" reg add \
        'HKCU\Software\Wine' /v Version /d "$NHUPDATE_WINDOWS" /f </dev/null >/dev/null 2>&1
      "$nhupdate_wineserver" -k
      $nhupdate_wine_limit "$nhupdate_wineserver" -w
      [ -e "$WINEPREFIX/system.reg" ] || { echo "Wine could not make a prefix." >&2; exit 1; }
      touch "$WINEPREFIX/.ready"
    fi
    if [ ! -e "$nhupdate_wine_folder/$lane/.ready" ]; then
      # Under its own name only when it is whole: the mark is copied before much of the rest.
      rm -rf "${nhupdate_wine_folder:?}/$lane" "$nhupdate_wine_folder/$lane.new"
      copy_prefix "$nhupdate_wine_folder/template" "$nhupdate_wine_folder/$lane.new" &&
        case " ${nhupdate_test_lanes[*]} " in
          *" $lane "*)
            scratch_to_memory "$nhupdate_wine_folder/$lane.new" &&
              forget_time_zones "$nhupdate_wine_folder/$lane.new"
            ;;
        esac &&
        mv "$nhupdate_wine_folder/$lane.new" "$nhupdate_wine_folder/$lane"
    fi
  ) 9>"$nhupdate_wine_folder/lock"
}

# Keeps the lane's server alive between programs, which makes each of them start at once. It ends
# by itself a minute after the last program. Does nothing when it is running.
start_lane() {
  ensure_lane "$1" || return 1
  local WINEPREFIX=$nhupdate_wine_folder/$1
  export WINEPREFIX
  "$nhupdate_wineserver" -k0 2>/dev/null && return 0
  rm -f "$WINEPREFIX/drive_c/desktop_kept"
  # What is in memory goes with the lane, or with the machine.
  [ ! -L "$WINEPREFIX/dosdevices/t:" ] || [ -d "$WINEPREFIX/dosdevices/t:" ] ||
    mkdir --mode=700 "$(readlink "$WINEPREFIX/dosdevices/t:")" || return 1
  (
    keep_to_processor "$1"
    use_display "$1"
    # Its services would keep the streams of the first program open as long as they live.
    # When it ends a program it says why, to nobody else.
    "$nhupdate_wineserver" -p60 </dev/null >/dev/null 2>"$WINEPREFIX/server_errors"
    $nhupdate_wine_limit "$nhupdate_wine" cmd /c exit </dev/null >/dev/null 2>&1
  )
}

# Keeps the running lane's desktop alive with the given program (tests/stand_ins/desktop_keeper), so
# that not every program that shows a window waits for one. Started from here it keeps none of the
# streams of a test open. It ends by itself a quarter of an hour after the last program, and the
# lane's server with it.
keep_desktop() {
  local ready=$WINEPREFIX/drive_c/desktop_kept tries=0
  [ -e "$1" ] && [ ! -e "$ready" ] || return 0
  "$nhupdate_wine" "$1" 'C:\desktop_kept' </dev/null >/dev/null 2>&1 &
  until [ -e "$ready" ]; do
    sleep 0.05
    tries=$((tries + 1))
    [ $tries -lt 600 ] || { echo "The lane's desktop can't be kept." >&2; return 1; }
  done
}

stop_lane() {
  WINEPREFIX=$nhupdate_wine_folder/$1 "$nhupdate_wineserver" -k
  WINEPREFIX=$nhupdate_wine_folder/$1 $nhupdate_wine_limit "$nhupdate_wineserver" -w
  [ ! -L "$nhupdate_wine_folder/$1/dosdevices/t:" ] ||
    rm -rf "$(readlink "$nhupdate_wine_folder/$1/dosdevices/t:")"
}

# Starts an X server on a free display and points DISPLAY to it. stop_display ends all of them.
nhupdate_display_processes=()
start_display() {
  local number_file number
  number_file=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$number_file" </dev/null >/dev/null 2>&1 &
  nhupdate_display_processes+=($!)
  local tries=0
  until [ -s "$number_file" ]; do
    sleep 0.05
    tries=$((tries + 1))
    [ $tries -lt 400 ] || { echo "Xvfb does not start." >&2; rm -f "$number_file"; return 1; }
  done
  number=$(<"$number_file")
  export DISPLAY=:$number
  rm -f "$number_file"
}

# start_displays LANE...: one for each of them, for this shell and what it starts. On a common one the
# windows of a lane take the focus from those of another, and then Wine's shell has another error for
# what it can't start; they also cover those whose colours a test reads from the screen.
start_displays() {
  local lane
  for lane; do
    start_display || return 1
    export "nhupdate_display_of_$lane=$DISPLAY"
  done
  unset DISPLAY
}

# Points DISPLAY to the lane's own display. One that has none keeps what it is.
use_display() {
  local own=nhupdate_display_of_$1
  [ -z "${!own:-}" ] || export DISPLAY=${!own}
}

stop_display() {
  [ ${#nhupdate_display_processes[@]} -gt 0 ] || return 0
  kill "${nhupdate_display_processes[@]}" 2>/dev/null
  wait "${nhupdate_display_processes[@]}" 2>/dev/null
  nhupdate_display_processes=()
}
