# shellcheck shell=bash
# What run.sh, test.sh and the checks share. To be sourced by a bash script in the project's folder.

say() { printf '== %s\n' "$*"; }

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# packages_of <section>...: the packages of these sections of packages.txt, one on a line.
packages_of() {
    awk -v wanted=" $* " '
        /^# [a-z]+:/ { section = substr($2, 1, length($2) - 1); next }
        /^[^#]/ && index(wanted, " " section " ") && !seen[$1]++ { print $1 }' packages.txt
}

# missing_packages <section>...: those of them that are not installed.
missing_packages() {
    local installed
    # dpkg-query fails when it does not know a package; what it does not print is missing.
    # shellcheck disable=SC2016 # the dollar is dpkg-query's
    installed=$(packages_of "$@" | xargs dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null || true)
    packages_of "$@" | grep -vxF -f <(sed -n 's/^installed //p' <<<"$installed") || true
}

# as_root <command>...: runs a command that only root may.
as_root() {
    if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

# plan_of <package>...: what apt-get would do to install these: every package that comes along, what is to be fetched,
# what it takes on the disk. Changes nothing and needs no root; fails when the lists of packages do not know one.
plan_of() {
    LC_ALL=C apt-get --print-uris --no-install-recommends install "$@" 2>/dev/null |
        sed -n '/^The following \(NEW\|packages will be\)/,/^After this operation/p'
}

fetch_lists() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq update ||
        fail "the lists of packages could not be fetched"
}

# agreed <question>: asks, where somebody sits at a terminal; without one nobody is there to be asked.
agreed() {
    [[ -t 0 && -t 2 ]] || return 0
    local answer
    read -rp "$1 [Y/n] " answer && [[ $answer =~ ^([Yy]|[Yy]es)?$ ]]
}

# need_packages <section>...: installs what is missing. What that is, and how much, is shown first; the user may say no.
need_packages() {
    command -v dpkg-query >/dev/null || fail "this system has no dpkg; Velmora is made for Debian 12 and 13"
    local missing plan
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    ((EUID == 0)) || command -v sudo >/dev/null ||
        fail "these packages are missing, and without root or sudo they cannot be installed: ${missing[*]}"
    if ! plan=$(plan_of "${missing[@]}"); then
        say "fetching the lists of packages"
        fetch_lists
        plan=$(plan_of "${missing[@]}") || fail "this system offers no such packages, or not all of: ${missing[*]}"
    fi
    say "missing here: ${missing[*]}"
    printf '%s\n' "$plan"
    agreed "Install them?" || fail "nothing was installed, and without these it does not go on: ${missing[*]}"
    say "installing"
    fetch_lists
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends "${missing[@]}" ||
        fail "these packages could not be installed: ${missing[*]}"
}

# build <preset> [target]...: configures where that is due, then builds these targets, or all.
build() {
    local folder=build/$1 targets=()
    (($# > 1)) && targets=(--target "${@:2}")
    mkdir -p build
    if [[ ! -f $folder/build.ninja || CMakePresets.json -nt $folder/build.ninja ]]; then
        say "configuring $folder"
        cmake --preset "$1" >"$folder.log" 2>&1 || { cat "$folder.log" >&2; fail "cmake --preset $1 failed"; }
        touch "$folder/build.ninja"
    fi
    say "building $folder"
    cmake --build "$folder" -j "$(nproc)" "${targets[@]}" || fail "the build of $folder failed"
}

# with_screen <command>...: runs a command on a fresh X screen of its own, away from the user's desktop.
with_screen() {
    env -u WAYLAND_DISPLAY GDK_BACKEND=x11 xvfb-run -a -s "-screen 0 ${SCREEN:-1600x1200x24} -nolisten tcp" "$@"
}
