#!/usr/bin/env bash
# tools/test NAME takes what NAME needs and nothing else: choose_tests_test.sh REPOSITORY
set -eu
choose=$(cd "$1" && pwd)/tools/lib/choose_tests
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

# describe PRESET EXECUTABLE RING LANE PREFIX SOURCE: as CMake does it.
describe() {
  mkdir -p "$tree/build/$1/test_executables"
  printf '%s\n' "ring $3" "lane $4" "prefix $5" "program $tree/$2.exe" "timeout 60" "tests $tree/$1/$2[1]_include.cmake" \
    "source $tree/$6" >"$tree/build/$1/test_executables/$2.txt"
}

describe host json_tests portable unit Portable. json_test.cpp
describe mingw-release json_tests unit unit '' json_test.cpp
describe mingw-release copy_tests unit unit '' copy_test.cpp
describe mingw-release chain_tests end_to_end e2e '' chain_test.cpp
describe mingw-release shipped_tests unit unit '' shipped_test.cpp
mkdir -p "$tree/build/mingw-release/tests/tools"
cat >"$tree/build/mingw-release/tests/tools/CTestTestfile.cmake" <<'END'
add_test([=[DemoTest.Ends]=] "/somewhere/demo")
set_tests_properties([=[DemoTest.Ends]=] PROPERTIES  LABELS "tools" TIMEOUT "400")
add_test([=[FormatCheck.A]=] "/somewhere/compiler")
set_tests_properties([=[FormatCheck.A]=] PROPERTIES  LABELS "unit" TIMEOUT "60")
END
cat >"$tree/json_test.cpp" <<'END'
TEST(JsonTest, IsRead) {
END
cat >"$tree/copy_test.cpp" <<'END'
TEST_F(CopyTest, CopiesFiles) {
TEST_F(CopyTestWithANameThatIsLongerThanALine,
       CopiesFolders) {
TEST_P(ModesTest, IsChosen) {
INSTANTIATE_TEST_SUITE_P(AllModes, ModesTest, testing::Values(1, 2));
END
cat >"$tree/chain_test.cpp" <<'END'
TEST_F(ChainTest, Runs) {
END
cat >"$tree/shipped_test.cpp" <<'END'
TEST(ShippedTest, IsWhole) {
END

failed=0
# chosen NAME LINE...: what choose_tests says for it, in any order.
chosen() {
  local name=$1 said expected
  shift
  said=$("$choose" "$tree/build" "$name" 2>&1 | sort) || true
  expected=$(printf '%s\n' "$@" | sort)
  [ "$said" = "$expected" ] || { printf '%s chooses\n%s\ninstead of\n%s\n' "$name" "$said" "$expected"; failed=1; }
}

copy=('build mingw-release copy_tests' 'lane unit')
chosen copy_tests "${copy[@]}"
chosen CopyTest "${copy[@]}" select
chosen '^CopyTest\.Copies' "${copy[@]}" select
chosen LongerThanALine.CopiesFolders "${copy[@]}" select
chosen AllModes/ModesTest.IsChosen/ "${copy[@]}" select
# The host's build only for what is tested there too.
chosen JsonTest 'build host json_tests' 'build mingw-release json_tests' 'lane unit' select
chosen Portable 'build host json_tests' select
chosen portable 'build host json_tests'
# The package only for those that look at it.
chosen ChainTest 'build mingw-release chain_tests' 'lane e2e' package select
chosen end_to_end 'build mingw-release chain_tests' 'lane e2e' package
chosen ShippedTest 'build mingw-release shipped_tests' 'lane unit' package select
chosen tools package
chosen DemoTest package select
chosen FormatCheck select
chosen unit 'build mingw-release json_tests' 'build mingw-release copy_tests' \
  'build mingw-release shipped_tests' 'lane unit' package

# ctest reads the lists of the chosen tests only.
expect_list() {
  local list
  list=$(<"$tree/build/CTestTestfile.cmake")
  [ "$list" = "$1" ] || { printf 'ctest reads\n%s\ninstead of\n%s\n' "$list" "$1"; failed=1; }
}
"$choose" "$tree/build" CopyTest >"$tree/said"
expect_list "include(\"$tree/mingw-release/copy_tests[1]_include.cmake\")"
"$choose" "$tree/build" DemoTest >"$tree/said"
expect_list "$(head -n 2 "$tree/build/mingw-release/tests/tools/CTestTestfile.cmake")"

# A name that fits no test is an error with a message.
refused() {
  local said status=0
  said=$("$choose" "$tree/build" "$1" 2>&1) || status=$?
  [ $status -eq 1 ] && grep -qF "$2" <<<"$said" ||
    { echo "$1 ended with $status and said: $said"; failed=1; }
}
refused NoSuchTest 'No test is called "NoSuchTest".'
refused 'Copy(' '"Copy(" is no regular expression'

exit $failed
