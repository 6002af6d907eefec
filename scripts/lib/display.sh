# A display for the programs that show windows. Sourced by scripts; needs a Wine prefix only for its user.

display_server=

# display_ensure [SIZE]: uses the given $DISPLAY or, without one, starts a private X server.
display_ensure() {
    if [ -n "${DISPLAY:-}" ]; then return 0; fi
    local number
    number=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "${1:-1280x1024}x24" -nolisten tcp 3>"$number" </dev/null >/dev/null 2>&1 &
    display_server=$!
    local tries=0
    until [ -s "$number" ]; do
        tries=$((tries + 1))
        if [ "$tries" -gt 100 ] || ! kill -0 "$display_server" 2>/dev/null; then
            echo "no display: Xvfb did not start" >&2
            return 1
        fi
        sleep 0.1
    done
    DISPLAY=:$(cat "$number")
    export DISPLAY
    rm -f "$number"
}

# display_end: ends the server that display_ensure started, if it did.
display_end() {
    if [ -n "$display_server" ]; then
        kill "$display_server" 2>/dev/null || true
        wait "$display_server" 2>/dev/null || true
        display_server=
    fi
}

# display_picture FILE.png: a picture of the whole screen.
display_picture() {
    import -window root "$1"
}
