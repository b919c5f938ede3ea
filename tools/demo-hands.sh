# shellcheck shell=bash
# Eyes and hands of the demonstration: looks at the screen, moves the mouse, types. To be sourced.
# Places are pixels of the main window's inner area, below its menu bar.

limit=20 # seconds that anything may take
window=  # the main window
menu=0   # height of its menu bar
pid=     # the program
log=demo/program.log

inner_height=662  # of the inner area, at the start
page=849x560+8+80 # the browser in it, while the record panel is hidden

give_up() {
    import -window root demo/failure.png 2>/dev/null || true
    tail -n 20 "$log" >&2 2>/dev/null || true
    fail "$*; the screen is in demo/failure.png"
}

# wait_until <what> <command>...: asks again and again until the command succeeds.
wait_until() {
    local what=$1 end=$((SECONDS + limit))
    shift
    until "$@"; do
        [[ -z $pid ]] || kill -0 "$pid" 2>/dev/null || give_up "the program ended; $what did not come"
        ((SECONDS < end)) || give_up "waited $limit s for $what"
        sleep 0.1
    done
}

# step <text> [name]: tells what has been done and takes a picture of it, once the page and what stands before it are
# drawn. With a name, the windows alone go to a picture of that name, too: the README shows these.
steps=0
step() {
    steps=$((steps + 1))
    picture_at_rest demo/rest "$page" 3
    rm -f demo/rest.png
    local number
    number=$(printf '%02d' "$steps")
    import -window root "demo/$number-step.png" || give_up "no picture could be taken"
    [[ -z ${2:-} ]] || convert "demo/$number-step.png" -trim +repage -colors 256 "demo/$2.png"
    printf '%s  %s\n' "$number" "$1"
}

find_window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1; }
is_shown() { [[ -n $(find_window "$1") ]]; }
is_gone() { [[ -z $(find_window "$1") ]]; }

# colour_at <x> <y>: the colour of a pixel, as six hexadecimal digits.
colour_at() {
    import -window "$window" -crop "1x1+$1+$(($2 + menu))" -depth 8 rgb:- 2>/dev/null | od -An -tx1 | tr -d ' \n'
}

# same_colour <x> <y> <colour>: whether the pixel has it, give or take a little.
same_colour() {
    local is at
    is=$(colour_at "$1" "$2")
    [[ ${#is} -eq 6 ]] || return 1
    for at in 0 2 4; do
        ((16#${is:at:2} - 16#${3:at:2} < 8 && 16#${3:at:2} - 16#${is:at:2} < 8)) || return 1
    done
}
other_colour() { ! same_colour "$@"; }

# picture_of <file> <width>x<height>+<x>+<y>: takes a picture of a piece of the inner area.
picture_of() {
    local size=${2%%+*} place=${2#*+}
    import -window "$window" -crop "$size+${place%+*}+$((${place#*+} + menu))" +repage "$1"
}

# same_picture <file> <file>: whether they are alike; the engine draws a letter a shade lighter now and then.
same_picture() { compare -fuzz 1% -metric AE "$1" "$2" null: 2>/dev/null; }

# stands_still <file> <piece> <looks>: whether a piece has looked the same for so many calls in a row.
still=0
stands_still() {
    picture_of "$1.png" "$2"
    if [[ -f $1-before.png ]] && same_picture "$1.png" "$1-before.png"; then
        still=$((still + 1))
    else
        still=0
    fi
    ((still < $3)) || return 0
    mv "$1.png" "$1-before.png"
    return 1
}

# picture_at_rest <file> <piece> [looks]: the picture of a piece once it has stopped changing. A text cursor blinks too
# fast for more than one look.
picture_at_rest() {
    rm -f "$1.png" "$1-before.png"
    still=0
    wait_until "a page that stands still" stands_still "$1" "$2" "${3:-1}"
    rm -f "$1-before.png"
}

looks_like() {
    picture_of "$1" "$2"
    same_picture "$1" "$3"
}

click() { xdotool mousemove --window "$window" "$1" "$(($2 + menu))" click 1; }
type_text() { xdotool type --delay 15 -- "$1"; }
key() { xdotool key --clearmodifiers "$1"; }

# answer_box <title> <key>: answers the message box of that title with a key.
answer_box() {
    xdotool windowactivate --sync "$(find_window "$1")" key "$2"
    wait_until "the box $1 to close" is_gone "$1"
}

start_program() {
    demo/program/velmora >>"$log" 2>&1 &
    pid=$!
    wait_until "the main window" is_shown '^Velmora v[0-9.]+$'
    window=$(find_window '^Velmora v[0-9.]+$')
    xdotool windowactivate --sync "$window"
    local height
    height=$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^HEIGHT=//p')
    menu=$((height - inner_height))
    ((menu >= 0 && menu < 80)) || give_up "the main window is $height pixels high"
}

program_ended() { ! kill -0 "$pid" 2>/dev/null; }

# close_program: presses the window's close box.
close_program() {
    xdotool windowactivate --sync "$window" key alt+F4
    local closing=$pid end=$((SECONDS + limit))
    until program_ended; do
        ((SECONDS < end)) || give_up "the program did not end"
        sleep 0.1
    done
    pid=
    wait "$closing" || give_up "the program ended with code $?"
}
