# Building for the tools. Sourced.

nhupdate_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# Where the builds of a compiler and the package made from them lie, from the root.
nhupdate_build=build
nhupdate_preset_prefix=

# use_compiler COMPILER: from here on the presets are those of another compiler than that of what is
# shipped. Their builds have the same names in a folder of their own.
use_compiler() {
  [ "$1" = clang ] || { echo "The second compiler is clang, not \"$1\"." >&2; return 1; }
  nhupdate_build=build/$1
  nhupdate_preset_prefix=$1-
}

# configure_preset PRESET: configures where needed. Says a line when there is something to do, and
# everything when it fails.
configure_preset() {
  local preset=$nhupdate_preset_prefix$1 folder=$nhupdate_root/$nhupdate_build/$1 log
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
  mkdir -p "$nhupdate_root/$nhupdate_build"
  (
    flock 8
    build_preset_alone "$@" 8>&-
  ) 8>"$nhupdate_root/$nhupdate_build/$1.lock"
}

build_preset_alone() {
  local preset=$1 folder=$nhupdate_root/$nhupdate_build/$1 log
  shift
  configure_preset "$preset" || return 1
  log=$(mktemp)
  if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    echo "Building $nhupdate_preset_prefix$preset" >&2
  fi
  if ! ninja -C "$folder" "$@" >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
