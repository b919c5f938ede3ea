#!/usr/bin/env bash
# The demonstration: the real program on a screen of its own, driven with mouse and keyboard. Records the practice
# form, keeps the record, starts the program anew and plays the record back. Pictures of the steps and the record's
# file go to demo/. Needs a finished build/release; run.sh demo sees to that.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/lib.sh
. tools/demo-hands.sh

if [[ ${1:-} != on-screen ]]; then
    rm -rf demo
    mkdir demo
    # A copy of its own, so that the user's records stay out of it.
    cmake --install build/release --prefix demo/program --component folder >/dev/null ||
        fail "build/release cannot be installed"
    SCREEN=1280x1024x24 with_screen tools/demo.sh on-screen
    exit
fi

# Controls, by their middle.
go=(165 24)
records=(269 24)
auto_record=(376 24)
address=(400 60)
temporary_tab=(180 450)
first_row=(200 490)
move_to_permanent=(803 535)
go_to=(803 575)
panel=849x180+8+450 # where the record panel comes up

# Places on the pages.
banner=(700 100)       # in the coloured head of every page
below_banner=(700 140) # in the head of the guide, below that of the practice form
field_name=(220 233)
fruit_pear=(500 308)
fruit_plum=(500 325)
delivery_collect=(584 386)
extras_gift=(83 452)
send=(486 438)
blue=1d5fa8
green=1b7a3d

address_typed=velmora://guide/practice
session=demo/program/session

guide_is_shown() { same_colour "${banner[@]}" $blue && same_colour "${below_banner[@]}" $blue; }
practice_is_shown() { same_colour "${banner[@]}" $blue && other_colour "${below_banner[@]}" $blue; }
answer_is_shown() { same_colour "${banner[@]}" $green; }
record_file() { find "$session" -name '*.xml' ! -name Velmora.xml -size +0 | head -n 1; }
record_is_kept() { [[ -n $(record_file) ]]; }
panel_is_shown() { ! looks_like demo/panel.png "$panel" demo/no-panel.png; }

show_records() {
    picture_of demo/no-panel.png "$panel"
    click "${records[@]}"
    wait_until "the record panel" panel_is_shown
}

fill_in() {
    click "${field_name[@]}"
    type_text "Ann Bell"
    key Tab
    type_text "open sesame"
    key Tab
    type_text "Ring twice & wait"
    # The engine hands keys on one by one and clicks at once: on a busy machine a click overtakes them.
    picture_at_rest demo/typed "$page"
    click "${fruit_pear[@]}"
    xdotool keydown ctrl
    click "${fruit_plum[@]}"
    xdotool keyup ctrl
    key Tab
    key g # chooses Green
    click "${delivery_collect[@]}"
    click "${extras_gift[@]}"
}

check_record() {
    local file pair
    file=$(record_file)
    for pair in 'name=Ann(\+|%20)Bell' 'secret=open(\+|%20)sesame' 'note=Ring(\+|%20)twice(\+|%20)%26(\+|%20)wait' \
        'fruit=pear' 'fruit=plum' 'colour=Green' 'delivery=collect' 'gift=yes'; do
        grep -Eq "$pair" "$file" || give_up "the record $file lacks $pair"
    done
    cp "$file" demo/
}

record() {
    start_program
    wait_until "the guide" guide_is_shown
    step "The program has started and shows its guide"
    click "${auto_record[@]}"
    step "Auto Record is switched on"
    xdotool mousemove --window "$window" "${address[0]}" $((address[1] + menu)) click --repeat 3 1
    key ctrl+a
    type_text "$address_typed"
    click "${go[@]}"
    wait_until "the practice form" practice_is_shown
    step "Go has brought the practice form"
    fill_in
    step "The form is filled in"
    click "${send[@]}"
    wait_until "the question about the new record" is_shown '^Velmora$'
    step "The form is sent: a temporary record is created" record
    answer_box '^Velmora$' Escape
    wait_until "the answer page" answer_is_shown
    picture_at_rest demo/answer-sent "$page"
    step "After No the answer page shows what was sent"
}

keep() {
    show_records
    click "${temporary_tab[@]}"
    picture_at_rest demo/list 700x100+20+470
    click "${first_row[@]}"
    step "The record stands on the tab Temporary Record" keep
    click "${move_to_permanent[@]}"
    wait_until "the record's file" record_is_kept
    check_record
    step "Moved to the permanent records; its file holds what was typed"
    close_program
    printf '    The program is closed\n'
}

play_back() {
    start_program
    wait_until "the guide" guide_is_shown
    show_records
    click "${first_row[@]}"
    step "Started anew: the record is on the tab Permanent Record"
    click "${go_to[@]}"
    wait_until "the question of Go to" is_shown "^Address: $address_typed\$"
    step "Go to asks whether to go to the form"
    answer_box "^Address: $address_typed\$" Return
    wait_until "the question before the fill" is_shown '^Session=Session1$'
    wait_until "the practice form behind it" practice_is_shown
    step "The form has come; the program asks whether to fill it in" play-back
    answer_box '^Session=Session1$' Return
    wait_until "the answer page" answer_is_shown
    wait_until "an answer page like the first one" looks_like demo/answer-played.png "$page" demo/answer-sent.png
    step "Filled in and sent by the program: the same values have arrived"
    close_program
}

tidy() {
    local process
    for process in $pid $window_manager; do kill "$process" 2>/dev/null || true; done
}
has_window_manager() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

# What the program keeps for its user (cookies and the like) stays out of the user's own folders, too.
export XDG_DATA_HOME=$PWD/demo/program/data XDG_CACHE_HOME=$PWD/demo/program/cache
openbox >demo/openbox.log 2>&1 &
window_manager=$!
trap tidy EXIT
wait_until "the window manager" has_window_manager
record
keep
play_back
rm -f demo/list.png demo/panel.png demo/no-panel.png
say "the demonstration is done; pictures and the record are in demo/"
