#!/usr/bin/env bash
# Draws the shipped icons and pictures from artwork/*.svg. Only needed when the drawings change: what it makes is in the tree.
# Needs rsvg-convert (librsvg2-bin), icotool (icoutils) and convert (imagemagick).
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for colour in amber green blue; do
  for size in 16 24 32 48; do
    rsvg-convert -w $size -h $size "artwork/mark-$colour.svg" -o "$work/$colour-$size.png"
  done
  mkdir -p data/trayicons
  icotool -c -o "data/trayicons/$colour.ico" "$work/$colour"-{16,24,32,48}.png
done

mkdir -p data/nomappics src/support/ui/artwork
for scene in hills stars; do
  rsvg-convert "artwork/nomap-$scene.svg" -o "$work/$scene.png"
  convert "$work/$scene.png" -background black -alpha remove -type TrueColor "BMP3:data/nomappics/$scene.bmp"
done
rsvg-convert artwork/nomap-grid.svg -o src/support/ui/artwork/nomap.png
rsvg-convert -w 96 -h 96 artwork/mark-amber.svg -o src/support/ui/artwork/logo.png
rsvg-convert -w 64 -h 64 artwork/mark-amber.svg -o src/support/ui/artwork/icon.png
