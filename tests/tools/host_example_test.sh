#!/usr/bin/env bash
# The example of a host can be configured with nothing of this repository in reach. That it then
# compiles and links, and without a warning, is shown by the build of all the rest, which gives it
# nothing but warnings: host_example_test.sh REPOSITORY
set -eu
repository=$(cd "$1" && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cp -r "$repository/examples/host" "$tree/host"
# The compiler is nothing of the example's.
cp "$repository/cmake/mingw_toolchain.cmake" "$tree/"

cmake -G Ninja -S "$tree/host" -B "$tree/build" -DCMAKE_TOOLCHAIN_FILE="$tree/mingw_toolchain.cmake" \
  >"$tree/log" 2>&1 || { cat "$tree/log"; exit 1; }
