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

# need_packages <section>...: installs what is missing.
need_packages() {
    command -v dpkg-query >/dev/null || fail "this system has no dpkg; Velmora is made for Debian 12"
    local missing become=()
    missing=$(missing_packages "$@" | tr '\n' ' ')
    [[ -n $missing ]] || return 0
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            fail "these packages are missing, and without root or sudo they cannot be installed: $missing"
        become=(sudo)
    fi
    say "installing $missing"
    "${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq update ||
        fail "the list of packages could not be fetched; missing: $missing"
    # shellcheck disable=SC2086
    "${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends $missing ||
        fail "these packages could not be installed: $missing"
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
