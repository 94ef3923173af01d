# Another release of Debian in a folder. Sourced by tools/systems.

# set_up_debian RELEASE FOLDER PACKAGE...: from the place where apt gets the packages of the release
# that runs here.
set_up_debian() {
  local release=$1 folder=$2 site packages
  shift 2
  [ "$(id -u)" -eq 0 ] || { echo "Only root can set up Debian $release." >&2; return 1; }
  ensure_packages debootstrap || return 1
  site=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Component: main' \
    "Codename: $(. /etc/os-release && echo "$VERSION_CODENAME")" | head -n 1)
  [ -n "$site" ] || { echo "apt doesn't say where it gets Debian from." >&2; return 1; }
  packages=$(IFS=, && echo "$*")
  echo "Setting up Debian $release" >&2
  # For all of its users.
  chmod 755 "$folder"
  # It leaves /proc mounted there.
  unshare --mount debootstrap --variant=minbase "--include=$packages" "$release" "$folder" "$site" \
    >"$folder/debootstrap.log" 2>&1 && return 0
  tail -n 20 "$folder/debootstrap.log" >&2
  return 1
}
