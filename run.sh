#!/usr/bin/env bash
# Builds Velmora into app/ and starts it; without a display it plays the demonstration instead.
#   ./run.sh        start the program
#   ./run.sh demo   play the demonstration, on a screen of its own; pictures go to demo/
set -euo pipefail
cd "$(dirname "$0")"
. tools/lib.sh

have_display() {
    [[ -n ${WAYLAND_DISPLAY:-} && -S ${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY ]] && return 0
    [[ -n ${DISPLAY:-} ]] && xdpyinfo >/dev/null 2>&1
}

case ${1:-} in
'' | demo) ;;
*) fail "usage: ./run.sh [demo]" ;;
esac

need_packages build run start
build release velmora velmora_agent

if [[ ${1:-} == demo ]] || ! have_display; then
    [[ ${1:-} == demo ]] || say "no display here: playing the demonstration instead"
    need_packages demo
    exec tools/demo.sh
fi
cmake --install build/release --prefix app --component folder >/dev/null ||
    fail "the program could not be put into app/"
say "starting app/velmora"
exec app/velmora
