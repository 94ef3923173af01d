# Building for the tools. Sourced.

nhupdate_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# configure_preset PRESET: configures where needed. Says a line when there is something to do, and
# everything when it fails.
configure_preset() {
  local preset=$1 folder=$nhupdate_root/build/$1 log
  log=$(mktemp)
  if [ ! -e "$folder/build.ninja" ] || [ "$nhupdate_root/CMakePresets.json" -nt "$folder/build.ninja" ]; then
    echo "Configuring $preset" >&2
    if ! (cd "$nhupdate_root" && cmake --preset "$preset") >"$log" 2>&1; then
      cat "$log" >&2
      rm -f "$log"
      return 1
    fi
  # Where only the lists of sources have changed, ninja knows.
  elif ! ninja -C "$folder" build.ninja >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# build_preset PRESET [TARGET...]: configures where needed and builds, likewise. Several tools may ask
# for it at once.
build_preset() {
  mkdir -p "$nhupdate_root/build"
  (
    flock 8
    build_preset_alone "$@" 8>&-
  ) 8>"$nhupdate_root/build/$1.lock"
}

build_preset_alone() {
  local preset=$1 folder=$nhupdate_root/build/$1 log
  shift
  configure_preset "$preset" || return 1
  log=$(mktemp)
  if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    echo "Building $preset" >&2
  fi
  if ! ninja -C "$folder" "$@" >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
