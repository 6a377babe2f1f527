#!/bin/bash
# powercut.sh [ROUNDS]: cuts the power of a disk while varnik-cli runs a mod, and expects every file of the install back.
#
# The disk is an image file with ext4, xfs or btrfs. In each of ROUNDS rounds (100) a fresh install is on it, by itself or
# together with the home folder, and at a random moment of the run the disk is gone: ext4 and xfs shut down without
# another byte of their log, of btrfs the image is taken as it is then. The disk is mounted again, and `varnik-cli
# recover` and `varnik-cli doctor --fix` put the install back. Tells of each disk how many installs came back exactly,
# and in how many rounds the journal of the mod stood on the disk when it was mounted again. Fails when one did not.
#
# Needs root, loop devices, python3 and the mkfs programs. POWERCUT_DISKS names other file systems than these three,
# VARNIK_CLI another program than that of the dev build.
set -euo pipefail
[[ "${1:-100}" =~ ^[1-9][0-9]*$ ]] || { echo "usage: powercut.sh [ROUNDS]" >&2; exit 2; }
cd "$(dirname "$0")/.."
rounds=${1:-100}
disks=${POWERCUT_DISKS:-ext4 xfs btrfs}
cli=$(realpath "${VARNIK_CLI:-build/dev/bin/varnik-cli}")
source=$PWD/tests/startup

missing() { echo "powercut.sh: $1" >&2; exit 2; }
[ "$(id -u)" = 0 ] || missing "only root can mount a disk"
[ -x "$cli" ] || missing "there is no $cli; build the target varnik-cli first"
for tool in python3 losetup mount umount; do command -v "$tool" >/dev/null || missing "$tool is missing"; done
for disk in $disks; do command -v "mkfs.$disk" >/dev/null || missing "mkfs.$disk is missing"; done
losetup -f >/dev/null || missing "there is no loop device"

work=$(mktemp -d)
mnt=$work/disk
image=$work/image
device=
mkdir "$mnt"
trap '[ -z "$device" ] || umount "$mnt" || true; [ -z "$device" ] || losetup -d "$device"; rm -rf --one-file-system "$work"' EXIT

attach() {
  device=$(losetup --find --show "$image") && mount "$device" "$mnt" || exit 1
}

# A program that the cut has ended may hold the disk for a moment longer.
detach() {
  for _ in {1..100}; do
    if umount "$mnt" 2>"$work/umount"; then
      losetup -d "$device"
      device=
      return
    fi
    sleep 0.05
  done
  cat "$work/umount" >&2
  exit 1
}

put() {
  mkdir -p "$(dirname "$game/$1")"
  printf '%s' "$2" >"$game/$1"
}

# An install with what the mods need, and an empty home.
make_install() {
  rm -rf "$game" "$home"
  mkdir -p "$game" "$home"/{app/mods,run}
  chmod 700 "$home/run"
  put bzone.exe $'#!/bin/sh\nsleep 0.01\n'
  chmod +x "$game/bzone.exe"
  for name in data.pak binkw32.dll; do put $name ""; done
  put bzone.cfg $'// the game\'s own\r\n'
  put addon/localize.odf $'[Network]\r\nVersionStr = "1.3"\r\n'
  for name in a b r; do put $name $name; done
  put new/b modded
  put hidden/x x
  put RaceName_A.txt player
  put pilots/b 2
  put saved/d 4
  put m/p/a 1
  put m/s/c 3
  put m/a mods
  put m/n n
  put RecyList.txt $'first 1\nmod own'
  put gameprefs.ini $'[UserPrefs]\nDefaultSessionName=Mine\n'
  cp "$source/$mod.bzm" "$game/mod.bzm"
  sync -f "$mnt"
}

# Every folder, and every file with its content.
snapshot() {
  (cd "$game" && find . -type d | LC_ALL=C sort && find . ! -type d -print0 | LC_ALL=C sort -z | xargs -0 cksum)
}

varnik() {
  env HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_STATE_HOME="$home/state" \
    XDG_RUNTIME_DIR="$home/run" VARNIK_HOME="$home/app" WINEPREFIX="$home/wine" "$@"
}

# run_for MILLISECONDS: runs the mod; then the power goes, and the program is killed. For as long as it takes without a
# number: says how many milliseconds that were.
run_for() {
  varnik python3 - "$cli" "$game" "$mnt" "$how" "${1:-}" <<'PY'
import fcntl, os, signal, struct, subprocess, sys, time

cli, game, disk, how, moment = sys.argv[1:]
SHUTDOWN = 0x8004587D  # the same request for ext4 and xfs
NO_LOG_FLUSH = struct.pack("I", 2)
folder = os.open(disk, os.O_RDONLY)
begin = time.monotonic()
run = subprocess.Popen([cli, "--root", game, "run", game + "/mod.bzm", "--options", ""], start_new_session=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
if moment:
    time.sleep(max(0, begin + float(moment) / 1000 - time.monotonic()))
    if how == "shutdown":
        fcntl.ioctl(folder, SHUTDOWN, NO_LOG_FLUSH)
    try:
        os.killpg(run.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
status = run.wait()
if not moment:
    print(int((time.monotonic() - begin) * 1000))
    sys.exit(status)
PY
}

# What the disk holds now, once nothing was written while it was copied.
take_image() {
  local counts=/sys/block/${device#/dev/}/stat
  local before
  while
    before=$(cat "$counts")
    cp --sparse=always "$image" "$image.taken"
    [ "$before" != "$(cat "$counts")" ]
  do :; done
}

# One round; its result is in `exact` and `open`.
round() {
  make_install
  local before problems=
  before=$(snapshot)
  run_for "$(awk -v r="$SRANDOM" -v span="$span" 'BEGIN { printf "%.3f", r / 4294967296 * span }')"
  [ "$how" = shutdown ] || take_image
  detach
  [ "$how" = shutdown ] || mv "$image.taken" "$image"
  attach
  if compgen -G "$home/state/varnik/journal/*.journal" >/dev/null; then open=$((open + 1)); fi
  varnik "$cli" recover >"$work/recover" 2>&1 || problems+="recover ended with $?"$'\n'
  varnik "$cli" --root "$game" doctor --fix >"$work/doctor" 2>&1 || problems+="doctor ended with $?"$'\n'
  problems+=$(diff <(echo "$before") <(snapshot) || true)
  if compgen -G "$home/state/varnik/journal/*" >/dev/null; then problems+=$'\n'"a journal is left"; fi
  if [ -z "$problems" ]; then
    exact=$((exact + 1))
  else
    printf '%s\n' "$type, $layout, $mod.bzm, round $1:" "$problems" "$(cat "$work/recover" "$work/doctor")"
  fi
}

# The disk of a type, with the home folder on it or not.
try_disk() {
  how=shutdown
  [ "$type" = ext4 ] || [ "$type" = xfs ] || how=image
  rm -f "$image"
  truncate -s 300M "$image"
  "mkfs.$type" -q "$image" >"$work/mkfs" 2>&1 || missing "$(cat "$work/mkfs")"
  attach
  game=$mnt/game
  home=$work/home
  [ "$layout" = "install alone" ] || home=$mnt/home
  exact=0
  open=0
  declare -A spans
  for mod in current older; do
    make_install
    spans[$mod]=$(run_for) || missing "$mod.bzm cannot be run"
  done
  for ((number = 1; number <= rounds; ++number)); do
    mod=current
    ((number % 2)) || mod=older
    span=${spans[$mod]}
    round $number
  done
  detach
  echo "$type, $layout: $exact of $rounds installs came back exactly; the journal stood in $open"
  [ "$exact" = "$rounds" ]
}

failed=0
for type in $disks; do
  for layout in "install alone" "install and home"; do
    try_disk || failed=1
  done
done
exit "$failed"
