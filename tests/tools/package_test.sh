#!/usr/bin/env bash
# The same content gives the same package, byte for byte: in the repository's own folder, in a clone
# of another commit with another date in another folder, and in a source archive. A package holds what
# a user's disk is to receive, says which commit it was made from, and isn't made from changes that
# are not committed unless that is wanted: package_test.sh REPOSITORY SCRATCH_FOLDER
set -eu
repository=$1
scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
trap 'rm -rf "$scratch"' EXIT

# What lies in the repository's folder, also what is not committed yet, as another commit with another
# date; built in another folder, with another user's habits.
clone="$scratch/deeper/in/another place"
git clone --quiet --no-checkout "$repository" "$clone"
export GIT_AUTHOR_NAME=test GIT_AUTHOR_EMAIL=test GIT_COMMITTER_NAME=test GIT_COMMITTER_EMAIL=test
git --git-dir="$clone/.git" --work-tree="$repository" add --all
GIT_COMMITTER_DATE='2001-02-03T04:05:06' git -C "$clone" commit --quiet --allow-empty --message=test
git -C "$clone" reset --quiet --hard
commit=$(git -C "$clone" rev-parse HEAD)
packages="$clone/build/package"
# What an earlier version has left.
mkdir -p "$packages"
touch "$packages/NHUpdateManager-0.9.0.zip"
# Without the tests, of which nothing is shipped and which take long to configure.
(umask 077 && export TZ=Asia/Tokyo && cd "$clone" &&
  cmake --preset mingw-release -D NHUPDATE_TESTS=OFF >/dev/null && tools/package >/dev/null)

# sums FOLDER: of the packages there, under the names that they have when nothing is dirty.
sums() { sed -e '/^#/d' -e 's/-dirty//' "$1/SHA256SUMS"; }
clean=$(sums "$packages")
diff <(sums "$repository/build/package") <(echo "$clean")
(cd "$packages" && sha256sum --check --quiet SHA256SUMS)

failed=0
fail() { echo "$*"; failed=1; }

# is_from COMMIT: says SHA256SUMS.
is_from() {
  grep -qxF "# NHUpdateManager $(sed -n 's/^project(NHUpdateManager VERSION \([0-9.]*\).*/\1/p' \
    "$clone/CMakeLists.txt"), commit $1" "$packages/SHA256SUMS" ||
    fail "The commit $1 is not named in SHA256SUMS."
}
is_from "$commit"
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
refused 'zip files begin with' env SOURCE_DATE_EPOCH=yesterday "$clone/tools/package"
refused 'zip files begin with' env SOURCE_DATE_EPOCH=0 "$clone/tools/package"
refused 'tools/package [--dirty] [--compiler clang] [FOLDER]' "$clone/tools/package" --help
refused 'tools/package [--dirty] [--compiler clang] [FOLDER]' "$clone/tools/package" --compiler
refused 'The second compiler is clang, not "other".' "$clone/tools/package" --compiler other
echo "a text" >"$clone/data/Config/new.json"
refused 'not committed' "$clone/tools/package"
# Also with a time of one's own choice.
SOURCE_DATE_EPOCH=1000000000 "$clone/tools/package" --dirty >/dev/null
grep -q '^# .* with changes that are not committed$' "$packages/SHA256SUMS" ||
  fail "That there were changes is not said."
[ "$(cd "$packages" && echo *.zip)" = "$(cd "$packages" && echo *-dirty.zip *-dirty-symbols.zip |
  tr ' ' '\n' | sort | paste -sd' ')" ] || fail "The names of the zip files don't say it."
unzip -l "$packages"/NHUpdateManager-*[0-9]-dirty.zip |
  grep -q '2001-09-09 01:46 .*NHUpdateManager.exe' ||
  fail "SOURCE_DATE_EPOCH is not the time of the files."
rm "$clone/data/Config/new.json"

# A source archive has no git; its commit is written down in it.
git -C "$clone" archive HEAD tools/lib/source_commit | tar -x -C "$clone"
rm -rf "$clone/.git"
GIT_CEILING_DIRECTORIES=$(dirname "$clone") "$clone/tools/package" >/dev/null
[ "$(sums "$packages")" = "$clean" ] || fail "Without git it has other bytes."
is_from "$commit"
exit $failed
