#!/usr/bin/env bash
# Installs the Debian packages of packages.txt that are missing. Needs root or sudo.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' packages.txt | grep -v '^$')
missing=()
for p in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if ((${#missing[@]})); then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  echo "setup: installing ${missing[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
