#!/usr/bin/env bash
# Makes the program's icon in the sizes of desktops from its drawing: FOLDER/NxN/apps/harborlantern.png.
#
#   tools/program_icons.sh FOLDER
#
# Needs rsvg-convert.
set -euo pipefail

drawing=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../data/icons/harborlantern.svg
for size in 16 22 24 32 48 64 128 256 512; do
    mkdir -p "$1/${size}x$size/apps"
    rsvg-convert -w "$size" -h "$size" "$drawing" -o "$1/${size}x$size/apps/harborlantern.png"
done
