#!/usr/bin/env bash
# The tests produce all that the program can tell and do; what is added without a test is found:
# program_texts_test.sh REPOSITORY
set -eu
root=$1
check=$root/tools/lib/check_program_texts

"$check" "$root"

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cp -r "$root"/{app,base,install,log,log_library,tests,text,update} "$tree"

# finds COMPLAINT EXPRESSION FILE: the check complains so after this change.
finds() {
  local file=$tree/$3 found
  cp "$file" "$tree/before"
  sed -i "$2" "$file"
  cmp --silent "$tree/before" "$file" && { echo "Nothing is changed by: $2" >&2; exit 1; }
  if found=$("$check" "$tree" 2>&1) || ! grep -qF -- "$1" <<<"$found"; then
    printf 'Not found: %s\nbut:\n%s\n' "$1" "$found" >&2
    exit 1
  fi
  cp "$tree/before" "$file"
}

# What only one more file shows: its golden files are taken away.
finds_without() {
  local complaint=$1 found
  shift
  mkdir "$tree/aside"
  (cd "$tree" && mv "$@" aside)
  if found=$("$check" "$tree" 2>&1) || ! grep -qF -- "$complaint" <<<"$found"; then
    printf 'Not found: %s\nbut:\n%s\n' "$complaint" "$found" >&2
    exit 1
  fi
  local file
  for file in "$@"; do mv "$tree/aside/$(basename "$file")" "$tree/$file"; done
  rmdir "$tree/aside"
}

"$check" "$tree"
finds 'the record 4|"Fail to copy it all." is produced by no test' \
  's/"Fail to copy folder\."/"Fail to copy it all."/' install/folder_copy.cpp
finds 'the record 3|"Copy complete." is produced by no test' \
  's/kInformation, L"Copy complete\."/kWarning, L"Copy complete."/' install/folder_copy.cpp
finds 'the record 4|"Fail to launch updater for fun : %d" is produced by no test' \
  's/launch updater for check/launch updater for fun/' update/launch_catalog.h
finds 'the record 3|"Records that are lost: %s" is produced by no test' \
  's/Records before this one that could not be written/Records that are lost/' log_library/logger.cpp
finds 'the console text "Log does not start : %d" is produced by no test' \
  's/Log start fail/Log does not start/' log/log_center.cpp
finds 'no test starts Updater.exe NIMBAHUB -SkipAdditionTasks -KillAll -ExitWhenParentDie:%d' \
  's/L"NIMBAHUB -SkipAdditionTasks -KillBrothers/L"NIMBAHUB -SkipAdditionTasks -KillAll/' \
  update/launch_catalog.h
finds 'no test starts ICACLS.exe "%s" /grant "*S-1-5-32-545":(OI)(CI)M /inheritance:e' \
  's/(CI)F/(CI)M/' install/folder_access.cpp
finds 'NIMBA HUB|DisplayVersion' 's/L"DisplayIcon"/L"DisplayVersion"/' install/registration.cpp
finds 'no test shows a box with KEY_FAIL_OTHER' 's/KEY_FAIL_COMMON_ERROR/KEY_FAIL_OTHER/' \
  text/string_keys.h
finds '-self_update ends in no test with 19 (kNextStageMissing)' \
  's/kNextStageMissing = 15/kNextStageMissing = 19/' update/result_code.h
finds '-update ends with 15, which stands at no group' \
  's/kNextStageMissing = 15/kNextStageMissing = 19/' update/result_code.h
finds '-install ends after all with 4 (kRegistryNotUpdated)' 's/Return 0/Return 4/' \
  tests/end_to_end/golden/InstallEndToEndTest.InstallsTheHubAndNimbaCast.txt
finds_without '-self_update ends in no test with 15 (kNextStageMissing)' \
  tests/end_to_end/golden/SelfUpdateEndToEndTest.EndsWith15AndABoxWhenTheInstalledProgramIsMissing.txt
# What can't be read is not passed over.
finds "this text can't be read" 's/L"Copy complete\."/CompleteText()/' install/folder_copy.cpp
