# shellcheck shell=sh
# Shell functions for the scripts at the root. Sourced, not run.

# What building with all tests needs, by its Debian names.
veldnls_packages="g++ cmake ninja-build libgtest-dev libicu-dev libcli11-dev nlohmann-json3-dev python3"

package_installed() {
  case "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null)" in
    *"ok installed") return 0 ;;
    *) return 1 ;;
  esac
}

# Installs what is missing of veldnls_packages. Returns 1, after a sentence on standard error, when it may not. On a
# system without apt it names them all there and returns 0, since it can't tell what is missing.
install_missing_packages() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This system has no apt; make sure that it has: $veldnls_packages" >&2
    return 0
  fi
  missing=""
  for package in $veldnls_packages; do
    package_installed "$package" || missing="$missing $package"
  done
  [ -n "$missing" ] || return 0

  if [ "$(id -u)" -eq 0 ]; then
    as_root="env"
  elif command -v sudo >/dev/null; then
    as_root="sudo env"
  else
    echo "Packages are missing and only root may install them. As root, run: apt-get install$missing" >&2
    return 1
  fi
  echo "Installing:$missing"
  if ! $as_root DEBIAN_FRONTEND=noninteractive apt-get update -q ||
    ! $as_root DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing; then
    echo "The packages could not be installed. As root, run: apt-get install$missing" >&2
    return 1
  fi
}
