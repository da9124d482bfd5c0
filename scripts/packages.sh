# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Debian packages by purpose. Sourced by the scripts of this project.

packages_for() {
  case $1 in
    build) echo cmake ninja-build g++ qt6-base-dev libcli11-dev nlohmann-json3-dev ;;
    wayland) echo qt6-wayland ;;
    test) echo libgtest-dev python3 python3-jsonschema xvfb x11-utils openbox dbus-daemon at-spi2-core python3-pyatspi ;;
    clang | fuzz | sanitize) echo clang ;;
    windows) echo g++-mingw-w64-x86-64-posix googletest wine64 ;;
    windows-package) echo dpkg-dev fonts-dejavu-core icoutils nsis unzip xz-utils zip ;;
    lint) echo git clang-format-14 clang-tidy-14 ;;
    measure) echo hyperfine libbenchmark-dev python3 xauth xdotool xvfb ;;
    debian13) echo mmdebstrap ;;
    package) echo cmark-gfm dpkg-dev file gzip ;;
    package-check) echo appstream binutils desktop-file-utils fakeroot lintian man-db ;;
    *) echo "packages_for: unknown purpose: $1" >&2; return 1 ;;
  esac
}

is_installed() {
  [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

as_root() {
  if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

# Installs missing packages of the given purposes. Needs no permissions if nothing is missing.
need_packages() {
  local purpose package missing=() wanted
  for purpose in "$@"; do
    wanted=$(packages_for "$purpose")
    for package in $wanted; do
      is_installed "$package" || missing+=("$package")
    done
  done
  ((${#missing[@]})) || return 0
  if ! command -v apt-get >/dev/null; then
    echo "This system has no apt-get. Install the equivalents of these Debian packages: ${missing[*]}" >&2
    return 0
  fi
  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    echo "sudo is not installed. Run as root: apt-get install ${missing[*]}" >&2
    return 1
  fi
  echo "Installing Debian packages: ${missing[*]}"
  local install=(env DEBIAN_FRONTEND=noninteractive apt-get install --yes --quiet --no-install-recommends "${missing[@]}")
  if ! apt-get install --simulate "${missing[@]}" &>/dev/null; then
    as_root apt-get update --quiet
  fi
  as_root "${install[@]}" || { as_root apt-get update --quiet && as_root "${install[@]}"; }
}

# Builds a preset, or the targets of it that follow, in its own directory under build/. Only a new
# directory is configured here; the build itself detects later changes.
build_preset() {
  [[ -f build/$1/build.ninja ]] || cmake --preset "$1"
  cmake --build --preset "$@"
}
