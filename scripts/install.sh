#!/usr/bin/env bash
# Installs the missing Debian packages of the given kinds ("build", "test"). Quick when nothing is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
missing=()
for kind in "$@"; do
  while read -r package; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done < <(awk -v kind="$kind" '$1 == kind {print $2}' scripts/packages.txt)
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}" >&2
root=()
[ "$(id -u)" -eq 0 ] || root=(sudo)
"${root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
