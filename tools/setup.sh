#!/bin/bash
# Installs what is missing on Debian 12: setup.sh run|test|check
#   run    what building Varnik and trying it needs
#   test   what the tests need, besides
#   check  what the other checks and the package need, besides
# Says first what it is going to install. Changes nothing when all of it is there.
set -euo pipefail

run=(
  g++ cmake ninja-build nlohmann-json3-dev libcli11-dev qt6-base-dev libxcb1-dev libfreeimage-dev libicu-dev libxxhash-dev
  # the small Windows programs that start the game under Wine
  clang lld mingw-w64-i686-dev mingw-w64-x86-64-dev
  # the window's letters, and the pictures of the world to try it in
  fonts-dejavu-core imagemagick
)
test=(
  libgtest-dev strace xvfb xdotool openbox x11-utils procps desktop-file-utils dbus-daemon libglib2.0-bin zsh fish
)
check=(
  git libbenchmark-dev clang-format clang-tidy libclang-rt-dev llvm
  dpkg-dev file librsvg2-bin lintian mandoc man-db appstream
)
case "${1:-}" in
  run) packages=("${run[@]}") ;;
  test) packages=("${run[@]}" "${test[@]}") ;;
  check) packages=("${run[@]}" "${test[@]}" "${check[@]}") ;;
  *) echo "usage: setup.sh run|test|check" >&2; exit 2 ;;
esac

installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null || true)
missing=()
for package in "${packages[@]}"; do
  grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

say() { echo "$*" >&2; }
needs_root() {
  say "These packages are missing: ${missing[*]}"
  say "$1 Have root run this, and try again:"
  say "  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
  exit 1
}

# How many packages the missing ones bring and how large they are; fails when the package lists do not know them.
announce() {
  local plan
  plan=$(apt-get --print-uris -qq -y --no-install-recommends install "${missing[@]}" 2>/dev/null) || return
  awk '/^\047/ { count++; bytes += $3 }
    END { printf "This installs %d packages, a download of %.0f MB, for: ", count, bytes / 1e6 }' <<<"$plan" >&2
  say "${missing[*]}"
}

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || needs_root "There is no sudo here."
  as_root=(sudo)
fi
announced=false
if announce; then
  announced=true
else
  say "The package lists are read first; then it is known how much is to be installed."
fi
if [ ${#as_root[@]} -gt 0 ]; then
  say "sudo is called for this and may ask for your password."
  sudo -v || needs_root "sudo refuses."
fi
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600)
"${apt[@]}" update >&2
$announced || announce || say "Unknown to the package lists: some of ${missing[*]}"
"${apt[@]}" install -y --no-install-recommends "${missing[@]}" >&2 </dev/null
