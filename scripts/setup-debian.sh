# SPDX-License-Identifier: Apache-2.0
# Sourced by the scripts that must work on a bare Debian 12: mcstat_require installs packages.
# shellcheck shell=bash

# mcstat_require PACKAGE...: installs the packages that are missing, and says so. Answers non-zero,
# with a message, where that is not possible.
mcstat_require() {
  local missing=() package
  for package in "$@"; do
    mcstat_is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  if ! command -v apt-get >/dev/null; then
    echo "These Debian packages are missing, and there is no apt-get here: ${missing[*]}" >&2
    return 1
  fi
  echo "== Installing Debian packages: ${missing[*]}"
  mcstat_as_root apt-get update -q && mcstat_as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}" || return
}

mcstat_is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

mcstat_as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "Root rights are needed for: $*  (there is no sudo here; run this as root)" >&2
    return 1
  fi
}
