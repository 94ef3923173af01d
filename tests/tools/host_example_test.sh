#!/usr/bin/env bash
# The example of a host builds with nothing of this repository in reach, and without a warning:
# host_example_test.sh REPOSITORY
set -eu
repository=$(cd "$1" && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cp -r "$repository/examples/host" "$tree/host"
# The compiler is nothing of the example's.
cp "$repository/cmake/mingw_toolchain.cmake" "$tree/"

cmake -G Ninja -S "$tree/host" -B "$tree/build" -DCMAKE_TOOLCHAIN_FILE="$tree/mingw_toolchain.cmake" \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >"$tree/log" 2>&1 &&
  ninja -C "$tree/build" >>"$tree/log" 2>&1 || { cat "$tree/log"; exit 1; }
[ -s "$tree/build/nimba_hub_host.exe" ]
