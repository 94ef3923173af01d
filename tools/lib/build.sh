# Building for the tools. Sourced.

nhupdate_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# build_preset PRESET [TARGET...]: configures where needed and builds. Says a line when there is
# something to do, and everything when it fails.
build_preset() {
  local preset=$1
  shift
  local folder=$nhupdate_root/build/$preset log
  log=$(mktemp)
  if [ ! -e "$folder/build.ninja" ] || [ "$nhupdate_root/CMakePresets.json" -nt "$folder/CMakeCache.txt" ]; then
    echo "Configuring $preset" >&2
    if ! (cd "$nhupdate_root" && cmake --preset "$preset") >"$log" 2>&1; then
      cat "$log" >&2
      rm -f "$log"
      return 1
    fi
  fi
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
