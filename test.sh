#!/usr/bin/env bash
# Builds Velmora with its tests and runs all of them, those of the desktop on a screen of their own.
#   ./test.sh [arguments for ctest]     for example: ./test.sh -R Playback
set -euo pipefail
cd "$(dirname "$0")"
. tools/lib.sh

need_packages build run test
preset=${VELMORA_PRESET:-dev}
build "$preset"
say "testing"
with_screen ctest --test-dir "build/$preset" --output-on-failure --no-tests=error -j "$(nproc)" "$@" ||
    fail "some tests did not pass, see above"
