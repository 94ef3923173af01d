#!/usr/bin/env bash
# What is packaged can be signed, and is then packed and counted as it was signed:
# package_signing_test.sh REPOSITORY
set -eu
repository=$1
. "$repository/tools/lib/packages.sh"
ensure_packages "${nhupdate_sign_packages[@]}"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj '/CN=Nobody' -keyout key.pem \
  -addext extendedKeyUsage=codeSigning -out certificate.pem 2>/dev/null

cat >sign <<END
#!/usr/bin/env bash
set -eu
osslsigncode sign -certs '$scratch/certificate.pem' -key '$scratch/key.pem' -h sha256 \\
  -n 'Nimba Hub' -in "\$1" -out "\$1.signed" >/dev/null
mv "\$1.signed" "\$1"
END
printf '#!/usr/bin/env bash\nexit 0\n' >forget
printf '#!/usr/bin/env bash\nexit 3\n' >fail
chmod +x sign forget fail

NHUPDATE_SIGN=$scratch/sign "$repository/tools/package" --dirty package >/dev/null
(cd package && sha256sum --check --quiet SHA256SUMS)
mkdir unpacked
unzip -q -d unpacked package/NHUpdateManager-*[0-9y].zip
failed=0
for binary in NHUpdateManager.exe NSWLogDynamic64U.dll; do
  cmp "package/NHUpdateManager/$binary" "unpacked/NHUpdateManager/$binary" || failed=1
  said=$(osslsigncode verify -CAfile certificate.pem -TSA-CAfile certificate.pem \
    -in "unpacked/NHUpdateManager/$binary" 2>&1) || true
  grep -q 'Signature verification: ok' <<<"$said" || { echo "$binary: $said"; failed=1; }
done
"$repository/tools/check_release" unpacked | grep -q 'is not signed' && failed=1

# refused HOOK TEXT: with nothing left that looks like a package.
refused() {
  local said
  if said=$(NHUPDATE_SIGN=$scratch/$1 "$repository/tools/package" --dirty package 2>&1); then
    echo "Packed although the hook \"$1\" had not signed."
    failed=1
  fi
  grep -qF "$2" <<<"$said" || { echo "The hook \"$1\": $said"; failed=1; }
  ! compgen -G 'package/*.zip' && [ ! -e package/SHA256SUMS ] ||
    { echo "The hook \"$1\" has left a package."; failed=1; }
}
refused forget 'has not signed NHUpdateManager.exe'
refused fail 'NHUpdateManager.exe could not be signed'
exit $failed
