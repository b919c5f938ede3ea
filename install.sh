#!/usr/bin/env bash
# Puts Velmora into a folder of the user's own, with an entry in the desktop's menu, or makes a package for all users.
#   ./install.sh [--prefix FOLDER]             installs, or brings an older installation up to date; into ~/.local, if
#                                              no folder is named
#   ./install.sh --remove [--prefix FOLDER]    takes away what was installed; the records stay
#   ./install.sh --package                     builds a Debian package instead, in build/release
set -euo pipefail
started_in=$PWD
cd "$(dirname "$0")"
. tools/lib.sh

usage() { fail "usage: ./install.sh [--remove] [--prefix FOLDER], or ./install.sh --package"; }

task=install_program
prefix=${HOME:?}/.local
while (($#)); do
    case $1 in
    --remove) task=remove_program ;;
    --package) task=make_package ;;
    --prefix)
        [[ -n ${2:-} ]] || usage
        prefix=$(cd "$started_in" && realpath -m -- "$2")
        shift
        ;;
    *) usage ;;
    esac
    shift
done
preset=${VELMORA_PRESET:-release}
# What is installed for others has to be theirs to read.
umask 022
installed=lib/velmora/installed.txt

build_program() {
    need_packages build run install "$@"
    build "$preset" velmora velmora_agent velmora_icons
}

install_program() {
    build_program
    cmake --install "build/$preset" --prefix "$prefix" --strip >/dev/null || fail "nothing can be put into $prefix"
    say "Velmora is installed; it is in the desktop's menu, and here: $prefix/bin/velmora"
    "$prefix/bin/velmora" --help | tail -n 1
}

# What install noted, and the folders that are empty then.
remove_program() {
    [[ -f $prefix/$installed ]] || fail "there is no installation of Velmora in $prefix"
    cd "$prefix"
    local file files
    mapfile -t files <"$installed"
    for file in "${files[@]}"; do
        rm -f -- "./$file" || fail "$prefix/$file cannot be removed"
        rmdir -p --ignore-fail-on-non-empty -- "$(dirname "$file")" 2>/dev/null || true
    done
    say "Velmora is removed from $prefix"
    [[ ! -d lib/velmora/session ]] || say "the records stay in $prefix/lib/velmora/session"
}

make_package() {
    build_program package
    (cd "build/$preset" && cpack) >build/package.log 2>&1 || fail "no package was made; build/package.log tells more"
    say "the package, and one of its symbols:"
    sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' build/package.log
}

$task
