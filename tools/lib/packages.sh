# The Debian packages the project needs, and installing those that are missing. Sourced by the
# tools; says nothing when everything is there.

# What builds the program and runs it.
nhupdate_packages=(
  cmake ninja-build
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 lld
  wine64 xvfb
  g++ googletest python3
  git zip unzip
)

# The second compiler, and the standard library that comes with it.
# shellcheck disable=SC2034  # used where this is sourced
nhupdate_second_compiler_packages=(clang libclang-rt-dev libc++-dev libc++abi-dev)

# What signs a package in the tests; a release is signed with what its maker has.
# shellcheck disable=SC2034  # used where this is sourced
nhupdate_sign_packages=(openssl osslsigncode)

# The rivals of the measurements, and what counts instructions.
# shellcheck disable=SC2034  # used where this is sourced
nhupdate_bench_packages=(nlohmann-json3-dev rapidjson-dev libspdlog-dev libfmt-dev valgrind)

# What the quick half of tools/lint looks with.
nhupdate_lint_packages=(clang-format shellcheck yamllint)

ensure_packages() {
  local missing=() package installed
  installed=$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null)
  for package in "$@"; do
    case $'\n'$installed$'\n' in
      *$'\n'"$package installed"$'\n'*) ;;
      *) missing+=("$package") ;;
    esac
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing ${missing[*]}" >&2
  local log
  log=$(mktemp)
  if ! {
    # A machine that has just been set up is often still busy with its own updates.
    "${as_root[@]}" apt-get -q update &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y \
        --no-install-recommends -o DPkg::Lock::Timeout=300 "${missing[@]}"
  } </dev/null >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed." >&2
    return 1
  fi
  rm -f "$log"
}
