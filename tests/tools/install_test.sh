#!/usr/bin/env bash
# What CMake installs as the program is what is packaged: install_test.sh REPOSITORY BUILD
set -eu
root=$1
build=$2
packaged=$root/build/package/NHUpdateManager
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$build" --component program --strip --prefix "$folder" >/dev/null

diff <(cd "$packaged" && find . -type f | sort) <(cd "$folder/NHUpdateManager" && find . -type f | sort)
cmp "$packaged/LogConfig.ini" "$folder/NHUpdateManager/LogConfig.ini"
diff -r "$packaged/Config" "$folder/NHUpdateManager/Config"
for binary in NHUpdateManager.exe NSWLogDynamic64U.dll; do
  symbols=$(x86_64-w64-mingw32-objdump -t "$folder/NHUpdateManager/$binary" | grep -c '(sec' || true)
  [ "$symbols" -eq 0 ] || { echo "$binary has $symbols symbols." >&2; exit 1; }
done
