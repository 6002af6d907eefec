# Works the property pages of selvane_host with mouse and keys. Sourced by demo-drive, behind lib/wine.sh.
# The host tells on its standard output where everything stands and what its driver was asked; every wait
# below is for a line there, never for a time alone.

host_pid=
host_log=

# pages_open LOG HOST [ARGUMENT...]: starts the host and waits until it shows a page.
pages_open() {
    host_log=$1
    shift
    : >"$host_log"
    "$WINE" "$@" --trace --layout </dev/null >"$host_log" 2>"$host_log.errors" &
    host_pid=$!
    pages_wait '^page 1 of '
}

# pages_close: presses OK and waits for the end.
pages_close() {
    pages_click "$(rect_of command OK)"
    local code=0
    wait "$host_pid" || code=$?
    host_pid=
    if [ "$code" -ne 0 ] || [ -s "$host_log.errors" ]; then
        cat "$host_log.errors" >&2
        echo "the host ended with code $code" >&2
        return 1
    fi
    rm -f "$host_log.errors"
}

# pages_end: ends a host that is still there.
pages_end() {
    [ -z "$host_pid" ] || kill "$host_pid" 2>/dev/null || true
}

# last_layout: the latest complete listing.
last_layout() {
    awk '/^frame "/ { block = ""; inside = 1 }
         inside { block = block $0 "\n" }
         /^end$/ { last = block; inside = 0 }
         END { printf "%s", last }' "$host_log"
}

# driver_calls: the calls in the log.
driver_calls() {
    grep -E '^(Get|Set|QuerySupported|CameraControl|VideoProcAmp) ' "$host_log" || true
}

# wait_until WHAT COMMAND...: for at most 20 seconds.
wait_until() {
    local what=$1 tries=0
    shift
    until "$@"; do
        tries=$((tries + 1))
        if [ "$tries" -gt 200 ] || ! kill -0 "$host_pid" 2>/dev/null; then
            echo "waited in vain for $what" >&2
            return 1
        fi
        sleep 0.1
    done
}

layout_has() { last_layout | grep -qE -- "$1"; }
# calls_have PATTERN COUNT: more calls than COUNT match.
calls_have() { [ "$(driver_calls | grep -cE -- "$1")" -gt "$2" ]; }

pages_wait() { wait_until "a listing with: $1" layout_has "$1"; }

# expect_calls COUNT PATTERN COMMAND...: does something that must bring about that many such calls; prints the last.
expect_calls() {
    local count=$1 pattern=$2 before
    shift 2
    before=$(driver_calls | grep -cE -- "$pattern") || true
    "$@"
    wait_until "$count calls like: $pattern" calls_have "$pattern" $((before + count - 1))
    echo "  $(driver_calls | grep -E -- "$pattern" | tail -n 1)"
}

# rect_of KIND NAME [ITEM]: "x y width height", from the latest listing.
rect_of() {
    local head="$1 \"$2\" ${3:+of \"$3\" }" found
    found=$(last_layout | grep -F -m 1 -- "$head" || true)
    if [ -z "$found" ] || [[ $found != "$head"* ]]; then
        echo "no such thing on the page: $head" >&2
        return 1
    fi
    rect_behind "${found#"$head"}"
}

# thumb_of NAME ITEM: rect of the thumb of a slider.
thumb_of() {
    local found
    found=$(last_layout | grep -F -m 1 -- "slider \"$1\" of \"$2\" ")
    rect_behind "${found##* thumb }"
}

# "10,20 30x40 ..." -> "10 20 30 40"
rect_behind() {
    sed -nE 's/^(-?[0-9]+),(-?[0-9]+) ([0-9]+)x([0-9]+).*/\1 \2 \3 \4/p' <<<"$1"
}

# middle_of PLACE: "x y"
middle_of() {
    local rect
    read -r -a rect <<<"$1"
    echo "$((rect[0] + rect[2] / 2)) $((rect[1] + rect[3] / 2))"
}

# shellcheck disable=SC2046 # the middle is two words
mouse_to() { xdotool mousemove --sync $(middle_of "$1"); }

pages_click() {
    mouse_to "$1"
    xdotool click 1
}

# show_page NUMBER: by a click on its tab.
show_page() {
    local tab
    tab=$(last_layout | grep -E -m 1 "^tab $1 ")
    pages_click "$(rect_behind "${tab##*\" }")"
    pages_wait "^page $1 of "
}

# drag_slider NAME ITEM STEPS [PIXELS [SECONDS]]: to the right, or to the left if negative, so many pixels a step, and so
# long for each, as a hand does.
drag_slider() {
    local step way=${4:-8}
    if [ "$3" -lt 0 ]; then way=-$way; fi
    mouse_to "$(thumb_of "$1" "$2")"
    xdotool mousedown 1
    for ((step = 0; step < ${3#-}; step++)); do
        xdotool mousemove_relative --sync -- $way 0
        sleep "${5:-0.05}"
    done
    xdotool mouseup 1
}

# type_value NAME ITEM TEXT: in place of what the edit holds; the tabulator leaves it, which sends it.
type_value() {
    pages_click "$(rect_of edit "$1" "$2")"
    xdotool key --delay 30 Home shift+End
    xdotool type --delay 30 -- "$3"
    xdotool key Tab
}

# pick_entry NAME ITEM ENTRY: opens the list and clicks an entry.
pick_entry() {
    pages_click "$(rect_of combo "$1" "$2")"
    pages_wait "^entry \"$3\" of \"$1\" "
    pages_click "$(rect_of entry "$3" "$1")"
}

# frame_picture FILE.png: the frame as it stands on the screen, with what happens to be in front of it.
frame_picture() {
    local rect
    mouse_to "$(rect_behind "$(last_layout | sed -nE '1s/^frame ".*" //p')")" # away from what was clicked
    sleep 0.3
    read -r -a rect <<<"$(rect_behind "$(last_layout | sed -nE '1s/^frame ".*" //p')")"
    import -window root -crop "${rect[2]}x${rect[3]}+${rect[0]}+${rect[1]}" +repage "$1"
}
