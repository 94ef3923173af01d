#!/usr/bin/env bash
# tools/debug stops the program at a breakpoint and shows how it came there: debug_test.sh REPOSITORY
set -eu
debug=$1/tools/debug

failed=0
refused() { # refused STATUS TEXT ARGUMENT...
  local wanted=$1 text=$2 said status=0
  shift 2
  said=$("$debug" "$@" 2>&1 </dev/null) || status=$?
  [ $status -eq "$wanted" ] && grep -qF -- "$text" <<<"$said" ||
    { printf '%s ended with %s and said:\n%s\n' "$*" $status "$said"; failed=1; }
}
refused 2 'tools/debug [--release]'
refused 2 'tools/debug [--release]' --fast
refused 1 'No test is called "NoSuchTest".' --release NoSuchTest

said=$("$debug" --release NHUpdateManager.exe -download -- --batch \
  -ex 'break nhupdate::CManagerCenter::CheckAndDownload' -ex continue -ex backtrace -ex list \
  -ex kill 2>&1 </dev/null) || true
for line in 'Breakpoint 1, nhupdate::CManagerCenter::CheckAndDownload' \
  'nhupdate::RunProgram' 'log.Write(LogLevel::kInformation, L"Function : Check' 'killed]'; do
  grep -qF "$line" <<<"$said" ||
    { printf 'Not shown: %s\n%s\n' "$line" "$said"; failed=1; }
done
exit $failed
