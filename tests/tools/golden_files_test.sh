#!/usr/bin/env bash
# Golden files without a test are found, and those with one are not: golden_files_test.sh REPOSITORY
set -eu
check=$1/tools/lib/check_golden
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
golden=$tree/tests/update/golden
mkdir -p "$golden"
cat >"$tree/tests/update/update_test.cpp" <<'END'
TEST(UpdateTest, Fails) {
TEST_F(UpdateTestWithANameThatIsLongerThanALine,
       Works) {
TEST_P(ModesTest, IsChosen) {
END
for owned in UpdateTest.Fails UpdateTest.Fails.children UpdateTestWithANameThatIsLongerThanALine.Works \
  All.ModesTest.IsChosen.0 All.ModesTest.IsChosen.0.part; do
  touch "$golden/$owned.txt"
done
"$check" "$tree" || { echo "Golden files with a test are complained about."; exit 1; }

failed=0
for left_over in UpdateTest.Fail UpdateTest.Works AnotherTest.Fails; do
  touch "$golden/$left_over.txt"
  status=0
  found=$("$check" "$tree") || status=$?
  if [ $status -ne 1 ] ||
    [ "$found" != "tests/update/golden/$left_over.txt: belongs to no test in tests/update/" ]; then
    echo "$left_over: ended with $status and said: $found"
    failed=1
  fi
  rm "$golden/$left_over.txt"
done
exit $failed
