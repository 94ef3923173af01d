#!/usr/bin/env bash
# Two clean clones in different folders give the same packages, byte for byte, and a package holds
# what a user's disk is to receive: package_test.sh REPOSITORY SCRATCH_FOLDER
set -eu
repository=$1
scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
trap 'rm -rf "$scratch"' EXIT

first="$scratch/first clone"
second="$scratch/deeper/in/another place"
git clone --quiet "$repository" "$first"
"$first/tools/package" >/dev/null
# Another folder, and another user's habits.
(umask 077 && git clone --quiet "$repository" "$second" && TZ=Asia/Tokyo "$second/tools/package" >/dev/null)

diff "$first/build/package/SHA256SUMS" "$second/build/package/SHA256SUMS"
(cd "$first/build/package" && sha256sum --check --quiet SHA256SUMS)

listing=$(unzip -Z1 "$first"/build/package/NHUpdateManager-*[0-9].zip)
for file in NHUpdateManager.exe NSWLogDynamic64U.dll LogConfig.ini \
  Config/SteamLanguageMapping.ini Config/NHUpdateManager.Default.json; do
  grep -qxF "NHUpdateManager/$file" <<<"$listing" || { echo "$file is missing"; exit 1; }
done
if grep -vE '^NHUpdateManager/(NHUpdateManager\.exe|NSWLogDynamic64U\.dll|LogConfig\.ini|Config/SteamLanguageMapping\.ini|Config/NHUpdateManager\.[A-Za-z0-9-]+\.json)$' <<<"$listing"; then
  echo "That does not belong into the package."
  exit 1
fi

# No path of the machine it was built on.
if grep -qaF "$scratch" "$first/build/package/NHUpdateManager/NHUpdateManager.exe" \
  "$first/build/package/NHUpdateManager/NSWLogDynamic64U.dll"; then
  echo "A build path has got into the package."
  exit 1
fi
