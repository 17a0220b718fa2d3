#!/usr/bin/env bash
# Makes the pictures of docs/: the window with the finished report of a small tree, on a light and on a dark
# desktop, and what the guide shows of it. Usage: tools/screenshots.sh [PROGRAM]
#
# Needs Xvfb, openbox, xdotool, import and convert (ImageMagick), installs none of them, and says which one is
# missing. Look at the pictures afterwards: keys select what they show, and a key that gets lost makes another
# picture. As root, mounts that are not needed here are left out of the list of drives; otherwise the list
# itself is left out.
set -eu
cd "$(dirname "$0")/.."
program=$(realpath -e "${1:-build/release/src/harborlantern}") || { echo "$0: build the program first" >&2; exit 1; }
missing=
for tool in Xvfb openbox xdotool import convert; do command -v "$tool" >/dev/null || missing="$missing $tool"; done
[ -z "$missing" ] || { echo "$0: not installed:$missing" >&2; exit 1; }

work=$(mktemp -d)
tree=${TMPDIR:-/tmp}/archive  # The pictures show this path.
mkdir "$tree" || { rm -rf "$work"; exit 1; }
started=
cleanUp() {
    for pid in $started; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work" "$tree"
}
trap cleanUp EXIT

# file NAME MEGABYTES: makes a sparse file, which takes no room.
file() { mkdir -p "$(dirname "$tree/$1")"; truncate -s "$(($2 * 1048576 + 5417))" "$tree/$1"; }
for year in 2022 2023 2024; do
    for month in 03 06 07 12; do
        for shot in 0412 0413 0498 0511; do
            file "Pictures/$year/IMG_$year${month}_$shot.jpg" $((year % 100 + ${month#0} * 3))
        done
    done
done
for title in "Harbour at dawn" "Ferry crossing" "Storm over the pier"; do file "Videos/$title.mp4" $((400 + ${#title} * 31)); done
for part in 1 2 3 4 5 6; do file "Music/Live at the docks/0$part - Part $part.flac" $((22 + part)); done
for part in 1 2 3; do file "Music/Field recordings/gulls-$part.wav" $((34 * part)); done
for name in sources-1.4 sources-1.5 sources-2.0; do file "Backups/$name.tar.xz" $((180 + ${#name})); done
file "Backups/mail/inbox.mbox" 740
file "Backups/mail/sent.mbox" 212
file "Disk images/debian-12-amd64.iso" 631
file "Disk images/rescue.img" 512
file "Documents/Manuals/router.pdf" 9
file "Documents/Manuals/camera.pdf" 31
file "Documents/Letters/2024-02-11.odt" 1
file "Projects/lighthouse/build/lighthouse" 46
file "Projects/lighthouse/build/lighthouse.debug" 188
file "Projects/lighthouse/src/main.cpp" 0
file "inventory.ods" 3
file "restore.sh" 0

for day in monday tuesday; do
    mkdir -p "$tree/Backups/$day"
    ln "$tree/Backups/mail/inbox.mbox" "$tree/Backups/mail/sent.mbox" "$tree/Backups/$day/"
done
printf '%s\n' 'Pictures: by year.' 'Videos: the films of the harbour.' \
    'Backups: one folder a day. What did not change is a hard link' 'to the copy of the day before.' > "$tree/read me first.txt"

# Numbers are in twentieths of a point; language 9 is English.
export HARBORLANTERN_HOME=$work/home XDG_RUNTIME_DIR=$work/run
mkdir -p "$HARBORLANTERN_HOME" "$work/config"
mkdir -m 700 "$XDG_RUNTIME_DIR"
printf '%s\r\n' '[Allgemein]' 'Lang=9' '[Optionen]' 'FolderShowPercentBar=1' '[Form]' 'Width=15600' \
    'Height=10200' 'Left=0' 'Top=0' 'TVW=8400' > "$work/settings"

# Makes a dark desktop, by the settings of one of the desktops.
cat > "$work/config/kdeglobals" <<'COLORS'
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=36,104,148
ForegroundNormal=252,252,252
COLORS

Xvfb -displayfd 3 -screen 0 1100x760x24 3>"$work/display" >/dev/null 2>&1 & started="$started $!"
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
DISPLAY=:$(cat "$work/display")
export DISPLAY
openbox >/dev/null 2>&1 & started="$started $!"

alone=
if unshare -m true 2>/dev/null; then
    alone="unshare -m env kept=:$program:$tree/:$work/:$PWD/:$HOME/: $work/alone"
    cat > "$work/alone" <<'ALONE'
#!/bin/sh
while read -r _ at _; do
    case $kept in *":${at%/}/"*) continue ;; esac
    case $at in /proc* | /sys* | /dev* | /run*) ;; *) umount -l "$at" 2>/dev/null ;; esac
done < /proc/self/mounts
exec "$@"
ALONE
    chmod +x "$work/alone"
else
    sed -i 's/^FolderShow/DiskinfoVisible=0\r\n&/' "$work/settings"
fi

# start SETTINGS [ENVIRONMENT...]: SETTINGS are lines of the section for the options, with one blank between
# two.
start() {
    local options=$1
    shift
    sed "s/^FolderShow/${options// /\\n}\n&/" "$work/settings" > "$HARBORLANTERN_HOME/Harborlantern.ini"
    # shellcheck disable=SC2086  # `alone` is a command with its arguments, or nothing.
    env "$@" $alone "$program" "$tree" >/dev/null 2>&1 &
    pid=$!
    for _ in $(seq 100); do
        window=$(xdotool search --onlyvisible --name '^Harborlantern ' 2>/dev/null | head -n 1) && [ -n "$window" ] && break
        sleep 0.1
    done
    sleep 3  # Waits for the scan, and for the answers of the drives.
    xdotool windowactivate --sync "$window" key F8
    sleep 1
}
press() {
    xdotool key --delay 100 "$@"
    sleep 1
}
# picture NAME COLOURS [WIDTHxHEIGHT+LEFT+TOP] [WINDOW]: without WINDOW, it is of the whole screen.
picture() {
    local to=docs/$1.png
    timeout 10 import -window "${4:-root}" -strip "$work/picture.png"
    convert "$work/picture.png" -crop "${3:-1040x680+0+0}" +repage -dither None -colors "$2" -strip \
        -define png:compression-level=9 "PNG8:$to"
    echo "$to: $(stat -c %s "$to") bytes"
}
stop() {
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

start ""
picture window 256
press Down Down Down Down Menu
picture folder-menu 64 560x430+0+80
press Escape ctrl+s
picture save 64 "" "$(xdotool getactivewindow)"
press Escape ctrl+p Return shift+Tab Down  # Selects the width of the page.
window=$(xdotool getactivewindow)
xdotool windowsize --sync "$window" 660 460
sleep 1
picture print 64 "" "$window"
stop
start "" QT_QPA_PLATFORMTHEME=kde XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5 \
    XDG_CONFIG_HOME="$work/config"
picture window-dark 256
stop
start "DiskinfoVisible=0 FilelistVisible=0 ToplistVisible=1 CreateListTOP=1"
picture largest 64 480x300+560+26
stop
start "DiskinfoVisible=0 FilelistVisible=0 HardlinksVisible=1 CreateListHardlink=1"
picture hard-links 64 480x300+560+26
stop
start "DiskinfoVisible=0 FilePreview=1"
press F6 End
picture preview 64 480x420+560+26
stop
