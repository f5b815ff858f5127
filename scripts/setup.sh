#!/usr/bin/env bash
# Installs what the build needs on a Debian 12 machine, and nothing when all is there.
set -euo pipefail

packages=(cmake ninja-build g++ git
          libfmt-dev nlohmann-json3-dev libcli11-dev
          libgtest-dev libgmock-dev
          libxml2-utils nodejs npm clang-format
          clang libclang-rt-14-dev)
# Only the browser check of the HTML report needs it; it is skipped without.
optional_packages=(chromium)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
# The machine may ship Node.js with its own npm (not the Debian package).
if command -v npm >/dev/null 2>&1; then
  missing=("${missing[@]/npm}")
fi
if command -v node >/dev/null 2>&1; then
  missing=("${missing[@]/nodejs}")
fi
read -r -a missing <<< "${missing[*]:-}"

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive

# Installs the given packages, reading the package lists first if needed.
install_packages() {
  "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "$@" && return 0
  "${sudo_cmd[@]}" apt-get update && "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "$@"
}

if [ "${#missing[@]}" -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  install_packages "${missing[@]}"
fi
for p in "${optional_packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    echo "setup: installing $p"
    install_packages "$p" || echo "setup: $p could not be installed; the checks that need it are skipped" >&2
  fi
done

# A locale whose decimal separator is a comma, for the tests that show that
# numbers in files do not depend on the locale.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
  if ! command -v localedef >/dev/null 2>&1; then install_packages locales; fi
  "${sudo_cmd[@]}" localedef -i de_DE -f UTF-8 de_DE.UTF-8 || echo "setup: de_DE.UTF-8 could not be generated" >&2
fi

# Front-end packages come from the committed lock file.
root=$(cd "$(dirname "$0")/.." && pwd)
if [ -f "$root/package-lock.json" ]; then
  if [ ! -d "$root/node_modules" ] || [ "$root/package-lock.json" -nt "$root/node_modules/.package-lock.json" ]; then
    (cd "$root" && npm ci --no-audit --no-fund)
  fi
fi
