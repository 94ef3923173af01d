#!/usr/bin/env bash
# The same content gives the same package, byte for byte: a clean clone, and a source archive of
# another commit with another date, in another folder. A package holds what a user's disk is to
# receive, says which commit it was made from, and isn't made from changes that are not committed
# unless that is wanted: package_test.sh REPOSITORY SCRATCH_FOLDER
set -eu
repository=$1
scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
trap 'rm -rf "$scratch"' EXIT

first="$scratch/first clone"
second="$scratch/deeper/in/another place"
git clone --quiet "$repository" "$first"
# What an earlier version has left.
mkdir -p "$first/build/package"
touch "$first/build/package/NHUpdateManager-0.9.0.zip"
"$first/tools/package" >/dev/null

# The same content as another commit; another folder, without git, and another user's habits.
git clone --quiet "$repository" "$scratch/other commit"
GIT_COMMITTER_NAME=test GIT_COMMITTER_EMAIL=test GIT_COMMITTER_DATE='2001-02-03T04:05:06' \
  git -C "$scratch/other commit" commit --quiet --amend --no-edit
commit=$(git -C "$scratch/other commit" rev-parse HEAD)
mkdir -p "$second"
git -C "$scratch/other commit" archive HEAD | tar -x -C "$second"
rm -rf "$scratch/other commit"
(umask 077 && TZ=Asia/Tokyo GIT_CEILING_DIRECTORIES=$scratch "$second/tools/package" >/dev/null)

packages="$first/build/package"
diff <(grep -v '^#' "$packages/SHA256SUMS") <(grep -v '^#' "$second/build/package/SHA256SUMS")
(cd "$packages" && sha256sum --check --quiet SHA256SUMS)

failed=0
fail() { echo "$*"; failed=1; }

for named in "$packages $(git -C "$first" rev-parse HEAD)" "$second/build/package $commit"; do
  grep -qxF "# NHUpdateManager $(sed -n 's/^project(NHUpdateManager VERSION \([0-9.]*\).*/\1/p' \
    "$first/CMakeLists.txt"), commit ${named##* }" "${named% *}/SHA256SUMS" ||
    fail "The commit ${named##* } is not named in ${named% *}/SHA256SUMS."
done
for file in NHUpdateManager/NHUpdateManager.exe NHUpdateManager/NSWLogDynamic64U.dll; do
  grep -q " $file\$" "$packages/SHA256SUMS" || fail "$file has no checksum."
done
[ "$(find "$packages" -name '*.zip' | wc -l)" -eq 2 ] || fail "An old zip file is still there."

listing=$(unzip -Z1 "$packages"/NHUpdateManager-*[0-9].zip)
for file in NHUpdateManager.exe NSWLogDynamic64U.dll LogConfig.ini NOTICES.txt \
  Config/SteamLanguageMapping.ini Config/NHUpdateManager.Default.json; do
  grep -qxF "NHUpdateManager/$file" <<<"$listing" || fail "$file is missing"
done
if grep -vE '^NHUpdateManager/(NHUpdateManager\.exe|NSWLogDynamic64U\.dll|LogConfig\.ini|NOTICES\.txt|Config/SteamLanguageMapping\.ini|Config/NHUpdateManager\.[A-Za-z0-9-]+\.json)$' <<<"$listing"; then
  fail "That does not belong into the package."
fi

# No path of the machine it was built on.
if grep -qaF "$scratch" "$packages/NHUpdateManager/NHUpdateManager.exe" \
  "$packages/NHUpdateManager/NSWLogDynamic64U.dll"; then
  fail "A build path has got into the package."
fi

# refused TEXT COMMAND...: before anything is changed.
refused() {
  local text=$1 said before
  shift
  before=$(cd "$packages" && find . -type f -exec sha256sum {} + | sort)
  ! said=$("$@" 2>&1) || fail "Not refused: $*"
  grep -qF -- "$text" <<<"$said" || fail "$* said: $said"
  [ "$(cd "$packages" && find . -type f -exec sha256sum {} + | sort)" = "$before" ] ||
    fail "Refused, but the package was changed: $*"
}
refused 'zip files begin with' env SOURCE_DATE_EPOCH=yesterday "$first/tools/package"
refused 'zip files begin with' env SOURCE_DATE_EPOCH=0 "$first/tools/package"
refused 'tools/package [--dirty] [--compiler clang] [FOLDER]' "$first/tools/package" --help
refused 'tools/package [--dirty] [--compiler clang] [FOLDER]' "$first/tools/package" --compiler
refused 'The second compiler is clang, not "other".' "$first/tools/package" --compiler other
echo "a text" >"$first/data/Config/new.json"
refused 'not committed' "$first/tools/package"
"$first/tools/package" --dirty >/dev/null
grep -q '^# .* with changes that are not committed$' "$packages/SHA256SUMS" ||
  fail "That there were changes is not said."
[ "$(cd "$packages" && echo *.zip)" = "$(cd "$packages" && echo *-dirty.zip *-dirty-symbols.zip |
  tr ' ' '\n' | sort | paste -sd' ')" ] || fail "The names of the zip files don't say it."

# A time of one's own choice, and nothing else is different.
rm "$first/data/Config/new.json"
SOURCE_DATE_EPOCH=1000000000 "$first/tools/package" >/dev/null
unzip -l "$packages"/NHUpdateManager-*[0-9].zip | grep -q '2001-09-09 01:46 .*NHUpdateManager.exe' ||
  fail "SOURCE_DATE_EPOCH is not the time of the files."
exit $failed
