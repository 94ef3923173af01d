#!/usr/bin/env bash
# The page of what is relied on about Windows tells of what is shipped, no more and no less, and
# what is wrong with it is found: reliances_page_test.sh REPOSITORY
set -eu
root=$1
images=("$root/build/package/NHUpdateManager/NHUpdateManager.exe"
  "$root/build/package/NHUpdateManager/NSWLogDynamic64U.dll")
check=$root/tools/lib/check_reliances

"$check" "$root" "${images[@]}"

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cp -r "$root"/{app,base,docs,install,log,log_library,text,update,tests} "$tree"

# finds COMPLAINT EXPRESSION [FILE]: the check complains so after this change.
finds() {
  local file=$tree/${3:-docs/windows.md} found
  cp "$file" "$tree/before"
  sed -i "$2" "$file"
  cmp --silent "$tree/before" "$file" && { echo "Nothing is changed by: $2" >&2; exit 1; }
  if found=$("$check" "$tree" "${images[@]}"); then
    echo "Not found: $1" >&2
    exit 1
  fi
  if ! grep -qF "docs/windows.md: $1" <<<"$found"; then
    printf 'Not found: %s\nbut:\n%s\n' "$1" "$found" >&2
    exit 1
  fi
  cp "$tree/before" "$file"
}

"$check" "$tree" "${images[@]}"
finds 'CopyFileW is called and imported and has no row' '/^| `CopyFileW` |/d'
finds 'CopyFileW has two rows' '/^| `CopyFileW` |/p'
finds 'MoveFileW has a row and is not imported and called' \
  's/^| `CopyFileW` |.*/&\n| `MoveFileW` | a | b | PlaceTest | c |/'
finds 'the row of Sleep has an empty cell or not 5 of them' 's/^| `Sleep` | [^|]*/| `Sleep` | /'
finds 'Sleep: there is no test suite NoSuchTest' '/^| `Sleep` |/s/WaitEndToEndTest/NoSuchTest/'
finds "Sleep: tests/reliances doesn't ask about it" '/^| `Sleep` |/s/WaitEndToEndTest/`reliances`/'
finds "memcpy is imported for the compiler's runtime and not in its list" 's/`memcpy`, //'
finds 'lstrlenW is in the list of the runtime and not imported' 's/`memcpy`/`lstrlenW`, &/'
finds 'Sleep is called by our code, not by the runtime alone' 's/`memcpy`/`Sleep`, &/'
finds "RtlGetNothing is said to be looked up by its name and isn't" 's/RtlGetVersion/RtlGetNothing/'
finds 'GetLocalTime has a row and is not imported and called' 's/::GetLocalTime/GetLocalTime_/' \
  install/registration.cpp
finds 'TlsGetValue is called and imported and has no row' 's/^namespace nhupdate {/&\ninline void* Value() { return ::TlsGetValue(0); }/' \
  base/console.cpp
