#!/bin/bash
# Builds the Debian package and looks at it as Debian would; then starts the program from the unpacked package, and from
# an install with another prefix, for a user who has never seen it.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

desktop-file-validate packaging/varnik.desktop
appstreamcli validate --no-net packaging/*.metainfo.xml
# Pages that this system does not have: our own are not installed here, and Wine need not be.
if mandoc -T lint man/* 2>&1 | grep -vE 'outdated mandoc.db|not found: Xr (varnik 6|varnik-cli 1|varnik.cmd 5|bzm 5|wine 1)( |$)'; then
  exit 1
fi

cmake --preset release
cmake --build --preset release
rm -rf build/release/package
cpack -G DEB --config build/release/CPackConfig.cmake
version=$(dpkg-deb -f build/release/package/*.deb Version)
[[ $(head -1 packaging/changelog) == "varnik ($version) "* ]] || { echo "packaging/changelog lacks $version" >&2; exit 1; }
grep -q "<release version=\"$version\"" packaging/*.metainfo.xml || { echo "the metainfo lacks $version" >&2; exit 1; }
lintian --allow-root --fail-on error,warning build/release/package/*.deb
dpkg-deb -x build/release/package/*.deb "$work/root"
DESTDIR=$work/other cmake --install build/release --prefix /opt/varnik >/dev/null

# first_start PREFIX: fills the folder of a user's own with all that is shipped, and finds the pages of the manual
first_start() {
  local home=$work/home page
  rm -rf "$home"
  env -i HOME="$home" PATH=/usr/bin:/bin "$1/bin/varnik-cli" settings >/dev/null
  diff -r --exclude=.shipped data "$home/.local/share/varnik"
  ls "$1"/libexec/varnik/{varnik-start{32,64}.exe,varnik-picture} >/dev/null
  for page in man/*; do
    page=${page#man/}
    man -M "$1/share/man" -w "${page##*.}" "${page%.*}" >/dev/null
  done
}
first_start "$work/root/usr"
first_start "$work/other/opt/varnik"
echo "the package passes"
