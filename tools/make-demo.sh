#!/usr/bin/env bash
# Makes a small world to try Varnik in: make-demo.sh TARGET
#
#   TARGET/games/bz2-1.3, TARGET/games/bz2-1.2   two installs, with a stand-in for the game, mods and maps
#   TARGET/app                                   the program's folder, with one mod for every install
#   TARGET/config                                settings: both installs listed, the first one selected
#   TARGET/played                                what the stand-in game was given, and the checksums of what it saw
#
# All of it is made up here, and the same each time. Needs convert (imagemagick).
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: make-demo.sh TARGET" >&2; exit 2; }
shipped=$(cd "$(dirname "$0")/../data" && pwd)
if [ -e "$1" ] && [ ! -e "$1/.varnik-demo" ]; then
  echo "make-demo.sh: $1 is there already and is no demo" >&2
  exit 1
fi
rm -rf "$1"
mkdir -p "$1"
target=$(cd "$1" && pwd)
touch "$target/.varnik-demo"

# Standard input as a text file with the line ends that the game's files have.
text() {
  mkdir -p "$(dirname "$1")"
  sed 's/$/\r/' >"$1"
}

# picture FILE COLOUR COLOUR [WIDTHxHEIGHT]: hills under a sky, in the format that the name ends in; drawn at the end
pictures=()
picture() {
  mkdir -p "$(dirname "$1")"
  pictures+=('(' -size "${4:-200x150}" "gradient:$2-$3" -fill "$3" -draw 'circle 40,160 40,90'
    -fill "$2" -draw 'circle 150,40 150,24' -depth 8 -type TrueColor -strip -write "$1" +delete ')')
}

# game ROOT NAME: a program that notes what it was given and what it saw, plays a moment and ends
game() {
  cat >"$1/$2" <<'GAME'
#!/bin/sh
# Stands in for the game.
record=../../played/$(basename "$PWD")
mkdir -p ../../played
{
  echo "program: $(basename "$0")"
  echo "folder: $PWD"
  for argument in "$@"; do echo "argument: $argument"; done
} >"$record.txt"
find . -type f -print0 | LC_ALL=C sort -z | xargs -0 cksum >"$record.files"
echo "played" >battlezone.log
sleep "${DEMO_SECONDS:-1}"
GAME
  chmod +x "$1/$2"
}

# map ROOT FOLDER NAME TITLE IVAR3 IVAR5 IVAR7 IVAR12 PICTURE COLOUR COLOUR
map() {
  local folder=$1/$2
  mkdir -p "$folder"
  echo "stand-in for the map $3" >"$folder/$3.bzn"
  text "$folder/$3.inf" <<INF
[DESCRIPTION]
missionName = "$4"
mapDesc = "$3.odf"
mapTga = "$3.$9"
[NetVars]
ivar3 = $5
ivar5 = $6
ivar7 = $7
ivar12 = $8
INF
  text "$folder/$3.odf" <<ODF
$4

A map of the demo. There is nothing on it but the hills in its picture.
ODF
  picture "$folder/$3.$9" "${10}" "${11}"
}

# maps ROOT MULTIPLAYER INSTANT: one map at least for every page of the tree
maps() {
  map "$1" "$2" duel "Duel at Dawn" 0 1 0 0 png '#f4b36b' '#5d3a2a'
  map "$1" "$2" canyon "Canyon Run" 0 1 263 0 jpg '#e8d6a0' '#7a4f2c'
  map "$1" "$2" banners "Banners" 0 1 2 0 bmp '#9ccfe8' '#2d5b3b'
  map "$1" "$2" summit "Summit" 0 1 1 0 png '#dfe9f2' '#55637a'
  map "$1" "$2" salvage "Salvage Yard" 0 1 3 0 jpg '#c9c3b8' '#4b4640'
  map "$1" "$2" oval "The Oval" 0 1 5 0 png '#b9e2a0' '#3f5d2a'
  map "$1" "$2" convoy "Convoy" 1 2 0 1 png '#d8b4e2' '#4a2f5c'
  map "$1" "$2" plateau "Twin Plateau" 1 2 0 0 jpg '#f0d9b5' '#6b4a2b'
  map "$1" "$3" outpost "Outpost Nine" 0 0 0 0 png '#a0c4e0' '#24405c'
  map "$1" "missions" training "Training Ground" 0 0 0 0 bmp '#e6e6c8' '#66663c'
  # A picture under another ending than the one that the map names, a map without pictures or texts, and a map whose
  # information lies elsewhere.
  map "$1" "$2" crater "Crater Lake" 1 2 0 0 png '#9fd6d2' '#1f4a48'
  sed -i 's/crater\.png/crater.tga/' "$1/$2/crater.inf"
  echo "stand-in for the map bare" >"$1/$2/bare.bzn"
  echo "stand-in for the map far" >"$1/addon/far.bzn"
  text "$1/data/info/far.inf" <<'INF'
[DESCRIPTION]
missionName = "Far Away"
INF
}

# install ROOT VERSION: what both installs have
install_game() {
  local root=$1
  mkdir -p "$root"/{addon,data/bindata,pilots,saved}
  game "$root" bzone.exe
  echo "stand-in" >"$root/data.pak"
  echo "stand-in" >"$root/binkw32.dll"
  echo "cached" >"$root/data/bindata/terrain.bin"
  echo "a pilot" >"$root/pilots/ace.plt"
  echo "a saved game" >"$root/saved/first.sav"
  echo "played" >"$root/battlezone.log"
  text "$root/addon/localize.odf" <<ODF
[Network]
VersionStr = "$2" // of the demo
ODF
  text "$root/bzone.cfg" <<'CFG'
// The game's own configuration, as the demo has it
ConfigureFileSystem()
{
    ConfigureStream ("base")
    {
                AddDirRecurse("@rootdir\addon");
                AddPack("@rootdir\data.pak");
                AddDirRecurse("@rootdir\data");
    }
    SetActiveStream("base");
}
CFG
  text "$root/render.cfg" <<'CFG'
[Render]
darkPlants = 0
CFG
  text "$root/RecyList.txt" <<'LIST'
IVRECY Recycler
FVRECY Factory
LIST
  picture "$root/screenshots/harbour.bmp" '#ffd9a0' '#4a3550' 320x240
  picture "$root/screenshots/old/first light.bmp" '#ffe8c8' '#5a6a7a' 320x240
}

first=$target/games/bz2-1.3
install_game "$first" 1.3
game "$first" bz2edit.exe
maps "$first" addon/missions/multiplayer addon/missions/instant
text "$first/addon/gameprefs.ini" <<'INI'
[UserPrefs]
DefaultSessionName=My session
DefaultPassword=secret
DefaultMessage=Hello
ShowFPS = true
VSyncOn = false
HovercraftForceView = -1
PersonForceView = 0
TrackedForceView = 1
WalkerForceView = 2
IRCAlternateNick = "ace_"
INI
for letter in A B; do
  echo "Race $letter" | text "$first/addon/RaceName_$letter.txt"
done

# Plain: active during a run only.
text "$first/frozen-frontier.bzm" <<'BZM'
BZ2HALD5
dname(Frozen Frontier); // the name in the list
description("Snow on every hill, ice under every tank. Active during a run only.");
image(frontier\title.png);
splash(frontier\splash.bmp);
version(1.3);
requirefile(data.pak);
requirefolder(frontier);
include(frontier\common.inc);
pak(frontier\snow);
fold(frontier);
rename(frontier\skis.odf, addon\skis.odf);
replace(addon\hover.odf, frontier\hover.odf, addon\hover.summer.odf);
BZM
text "$first/frontier/common.inc" <<'BZM'
BZ2HALD5
defaultname(Frozen Frontier);
defaultpass(icicle);
defaultsmsg("Mind the ice, and the wind");
writeid(frontier.id);
addrecy(SNRECY, Snow Recycler);
addrecy(SNRECY, Snow Recycler, addon\more.txt);
BZM
for odf in addon/hover.odf frontier/hover.odf frontier/skis.odf; do
  echo "// $odf of the demo" | text "$first/$odf"
done
echo "stand-in" >"$first/frontier/snow.pak"
echo "IVMORE More" | text "$first/addon/more.txt"
picture "$first/frontier/title.png" '#eaf4ff' '#6f8fae'
picture "$first/frontier/splash.bmp" '#eaf4ff' '#3f5f7e' 400x300

# Changes the names of races, of which each run leaves a further line end behind.
text "$first/league.bzm" <<'BZM'
BZ2HALD5
dname(League Night);
description("Two teams with names of their own.");
racename(A, Snow Foxes);
racename(b, Ice Wolves);
BZM

# Persistent, and inactive.
text "$first/night-ops.bzm" <<'BZM'
BZ2HALD5
dname(Night Operations);
descriptionf(nightops\about.txt);
version(1.3, 1.3.1);
activated();
activatedfile(nightops-on.odf);
renameex(addon\sky.odf, nightops\sky.odf, addon\sky.day.odf);
rename(nightops\on.odf, nightops-on.odf);
BZM
echo "A mod that stays active between runs until it is deactivated." | text "$first/nightops/about.txt"
for odf in addon/sky.odf nightops/sky.odf nightops/on.odf; do
  echo "// $odf of the demo" | text "$first/$odf"
done

# Persistent, and active: the folder has its active name.
text "$first/fine-terrain.bzm" <<'BZM'
BZ2HALD5 /x
dname(Fine Terrain);
description(Finer textures. Shipped active.);
activated();
activatedfold(fineterrain-on);
activatedrecy(FINE);
rename(fineterrain, fineterrain-on);
BZM
echo "// finer" | text "$first/fineterrain-on/grass.odf"

# Carried out by a program of its own, which can undo it, too.
text "$first/overhaul.bzm" <<'BZM'
BZ2HALD5
dname(Complete Overhaul);
description(A mod that brings its own program.);
requireexe(overhaul.exe, /undo);
BZM
game "$first" overhaul.exe

# Brings a game configuration of its own.
text "$first/arena.bzm" <<'BZM'
BZ2HALD5
dname(Arena);
description(Small maps in a folder of their own.);
replace(bzone.cfg, arena\arena.cfg, bzone.before-arena.cfg);
BZM
text "$first/arena/arena.cfg" <<'CFG'
ConfigureFileSystem()
{
    ConfigureStream ("base")
    {
                AddDirRecurse("@rootdir\arena");
                AddPack("@rootdir\data.pak");
    }
    SetActiveStream("base");
}
CFG
map "$first" arena/missions pit "The Pit" 0 1 0 0 png '#d9a0a0' '#5c2424'

# Not for this version, so it is not listed.
text "$first/only-old.bzm" <<'BZM'
BZ2HALD5
dname(Only for 1.1);
version(1.1);
BZM

second=$target/games/bz2-1.2
install_game "$second" 1.2
maps "$second" data/missions/multiplayer addon/missions/instant
text "$second/options.txt" <<'TXT'
This install has no varnik.cmd of its own.
TXT

text "$second/squad.bzm" <<'BZM'
BZ2HALD5
dname(Squad);
description("A persistent mod that counts as active once its list has lines of others, too.");
version(1.2);
activated();
activatedrecy(SQUAD, lists\squad.txt);
addrecy(SQUAD, Wolf, lists\squad.txt);
BZM
text "$second/lists/squad.txt" </dev/null

# The older format, one definition for each kind of configuration.
text "$second/dusty.bzm" <<'BZM'
bz2hald3
desc Dusty Roads // the name
dfile @rootdir\dusty\about.txt

splashimg dusty\splash.bmp
; a configuration that is made for the run
dynamic
pak @rootdir\dusty\roads
fold @rootdir\dusty
replace @rootdir\addon\car.odf, @rootdir\dusty\car.odf
move @rootdir\dusty\extra.odf, @rootdir\addon\extra.odf
remove @rootdir\addon\rain.odf
pilots @rootdir\dusty\pilots
saved @rootdir\dusty\saved
BZM
echo "Dust, and a road through it." | text "$second/dusty/about.txt"
echo "stand-in" >"$second/dusty/roads.pak"
mkdir -p "$second/dusty/pilots" "$second/dusty/saved"
echo "a pilot of the road" >"$second/dusty/pilots/driver.plt"
echo "a saved journey" >"$second/dusty/saved/road.sav"
for odf in addon/car.odf addon/rain.odf dusty/car.odf dusty/extra.odf; do
  echo "// $odf of the demo" | text "$second/$odf"
done
text "$second/preset.bzm" <<'BZM'
BZ2HALD2
desc Preset
dfile none


predefined @rootdir\presets\arena.cfg
BZM
text "$second/presets/arena.cfg" <<'CFG'
ConfigureFileSystem()
{
    ConfigureStream ("base")
    {
                AddDirRecurse("@rootdir\presets");
                AddPack("@rootdir\data.pak");
    }
}
CFG
text "$second/swap.bzm" <<'BZM'
BZ2HALD1
desc Swap
dfile none


nobzonecfg
replace @rootdir\addon\car.odf, @rootdir\dusty\car.odf
BZM
text "$second/launcher.bzm" <<'BZM'
BZ2HALD3
desc Own Launcher
dfile none


exec @rootdir\launcher.exe
BZM
game "$second" launcher.exe

mkdir -p "$target/app/mods"
cp -r "$shipped/." "$target/app/"
text "$target/app/mods/friends.bzm" <<'BZM'
BZ2HALD5
dname(Evening with Friends);
description(From the program's folder: it fits every install.);
image(friends.png);
defaultname(Evening with Friends);
writeid(friends.id);
BZM
picture "$target/app/mods/friends.png" '#ffe0b0' '#70405c'

convert -define png:exclude-chunks=date,time -define bmp:format=bmp3 "${pictures[@]}" xc: null:

json() { printf '%s' "$1" | sed 's/[\\"]/\\&/g'; }
mkdir -p "$target/config/varnik"
cat >"$target/config/varnik/settings.json" <<JSON
{
  "Varnik": {
    "BZ2Dir": {
      "Active": "0",
      "BZ2Loc0": "$(json "$first")\\\\", "BZ2Des0": "Demo 1.3", "BZ2Sel0": "Yes",
      "BZ2Loc1": "$(json "$second")\\\\", "BZ2Des1": "Demo 1.2", "BZ2Sel1": "Yes"
    }
  }
}
JSON
