#!/bin/bash
# Installs what building, testing and checking need on Debian 12; does nothing when all of it is there.
set -euo pipefail

packages=(
  # build
  g++ cmake ninja-build ccache pkg-config git
  nlohmann-json3-dev libcli11-dev qt6-base-dev libgl1-mesa-dev libfreeimage-dev libicu-dev libxxhash-dev
  # the small Windows programs that start the game under Wine
  clang lld mingw-w64-i686-dev mingw-w64-x86-64-dev
  # run
  fonts-dejavu-core
  # test
  libgtest-dev libgmock-dev libbenchmark-dev strace xvfb xdotool openbox imagemagick x11-utils procps desktop-file-utils
  dbus-daemon libglib2.0-bin trayer zsh fish
  # check
  clang-format clang-tidy libclang-rt-14-dev llvm
  # package, and check it
  dpkg-dev librsvg2-bin lintian mandoc man-db appstream
)

installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null || true)
missing=()
for package in "${packages[@]}"; do
  grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}" >&2
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "This needs root or sudo." >&2; exit 1; }
  as_root=(sudo)
fi
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600)
"${apt[@]}" update >&2
"${apt[@]}" install -y --no-install-recommends "${missing[@]}" >&2 </dev/null
