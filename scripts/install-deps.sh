#!/usr/bin/env bash
# Installs the Debian packages the project needs, and only those that are missing.
# Safe to run again and again.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6printsupport6 qt6-translations-l10n qt6-svg-dev
  libqcustomplot-dev zlib1g-dev libisal-dev libfftw3-dev
  # the cutter's MATLAB and HDF5 outputs
  libmatio-dev libhdf5-dev
  xvfb xauth poppler-utils
  # the fonts the program names (Arial: Liberation Sans has its metrics) and the tests' fallback
  fonts-liberation2 fonts-dejavu-core
  clang libclang-rt-14-dev
  # the Debian package and the checks of the desktop files, MIME types and window captions
  dpkg-dev fakeroot file desktop-file-utils libxml2-utils shared-mime-info xdg-utils libglib2.0-bin
  appstream x11-utils
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: everything is installed"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
