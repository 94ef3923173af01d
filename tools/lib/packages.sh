# The Debian packages the project needs, and installing those that are missing. Sourced by the
# tools; says nothing when everything is there.

# What builds the program and runs it.
nhupdate_packages=(
  cmake ninja-build
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 lld
  wine64 xvfb
  g++ googletest libgmock-dev python3
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

missing_packages() {
  local package installed
  installed=$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null)
  for package in "$@"; do
    case $'\n'$installed$'\n' in
      *$'\n'"$package installed"$'\n'*) ;;
      *) echo "$package" ;;
    esac
  done
}

install_packages() {
  local as_root=() log
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing $*" >&2
  log=$(mktemp)
  if ! {
    # A machine that has just been set up is often still busy with its own updates.
    "${as_root[@]}" apt-get -q update &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y \
        --no-install-recommends -o DPkg::Lock::Timeout=300 "$@"
  } </dev/null >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed." >&2
    return 1
  fi
  rm -f "$log"
}

# Several tools may ask for theirs at once.
ensure_packages() {
  [ -n "$(missing_packages "$@")" ] || return 0
  (
    flock 7
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] || install_packages "${missing[@]}" 7>&-
  ) 7<"${BASH_SOURCE[0]}"
}
