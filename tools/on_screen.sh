#!/usr/bin/env bash
# Runs a command in an X server of its own, with a window manager, a session bus and nothing of the user's desktop:
#
#   tools/on_screen.sh [--size WIDTHxHEIGHT] COMMAND...
#
# Ends with the command's status. Needs xvfb, xauth, openbox, x11-utils and dbus.
set -euo pipefail

if [[ ${1-} != --inside ]]; then
    size=1280x900
    if [[ ${1-} == --size ]]; then size=$2 && shift 2; fi
    runtime=$(mktemp -d)
    trap 'rm -rf "$runtime"' EXIT
    chmod 700 "$runtime"
    unset WAYLAND_DISPLAY XDG_CURRENT_DESKTOP XDG_SESSION_TYPE QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
    XDG_RUNTIME_DIR=$runtime QT_QPA_PLATFORM=xcb dbus-run-session -- \
        xvfb-run -a -s "-screen 0 ${size}x24" "$0" --inside "$@"
    exit
fi

shift
openbox >/dev/null 2>&1 &
manager=$!
trap 'kill "$manager" 2>/dev/null || true' EXIT
# Until the window manager answers, a window that is shown never becomes active.
for ((i = 0; i < 100; i++)); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
    sleep 0.05
done
"$@"
