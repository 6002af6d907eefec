# Wine in prefixes of our own. Sourced by the scripts that run Windows programs.

WINE=/usr/lib/wine/wine64 # not the "wine" on the path: that wrapper prints hints
WINESERVER=/usr/lib/wine/wineserver

# wine_use_prefix DIRECTORY: selects (and creates) a prefix for everything that follows.
wine_use_prefix() {
    mkdir -p "$1"
    WINEPREFIX=$(cd "$1" && pwd)
    WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=' # the last one writes into the menus of the user's desktop
    WINEDEBUG=${WINEDEBUG:--all}
    export WINEPREFIX WINEDLLOVERRIDES WINEDEBUG
}

# wine_boot null|x11: makes sure that the prefix is complete and its server runs. Wine's services inherit
# the streams of the command that starts them and keep them open, so they must never see a caller's pipe.
# "null" runs all window logic without a display; "x11" shows windows on $DISPLAY. SELVANE_GLOBAL_FLAGS are those that
# every process of a new prefix gets.
wine_boot() {
    if [ "$1" = null ]; then unset DISPLAY; fi
    if [ -e "$WINEPREFIX/.ready" ] && "$WINESERVER" -k0 2>/dev/null; then return 0; fi
    (
        flock 9
        "$WINESERVER" -p300 </dev/null >/dev/null 2>&1 9>&- || true
        "$WINE" wineboot </dev/null >/dev/null 2>&1 9>&-
        if [ ! -e "$WINEPREFIX/.ready" ]; then
            "$WINE" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d "$1" /f </dev/null >/dev/null 2>&1 9>&-
            [ -z "${SELVANE_GLOBAL_FLAGS:-}" ] || "$WINE" reg add \
                'HKLM\System\CurrentControlSet\Control\Session Manager' /v GlobalFlag /t REG_DWORD \
                /d "$SELVANE_GLOBAL_FLAGS" /f </dev/null >/dev/null 2>&1 9>&-
            # The desktop of the first boot has no driver yet, and programs would find no windows there.
            "$WINESERVER" -k </dev/null >/dev/null 2>&1 9>&- || true
            "$WINESERVER" -w </dev/null >/dev/null 2>&1 9>&- || true
            "$WINESERVER" -p300 </dev/null >/dev/null 2>&1 9>&- || true
            "$WINE" wineboot </dev/null >/dev/null 2>&1 9>&-
            : >"$WINEPREFIX/.ready"
        fi
    ) 9>"$WINEPREFIX/.lock"
}

# wine_stop: ends the server of the selected prefix, and with it every program in it.
wine_stop() {
    "$WINESERVER" -k </dev/null >/dev/null 2>&1 || true
}

# wine_stop_each DIRECTORY...: the same in each of these prefixes.
wine_stop_each() {
    local prefix
    for prefix in "$@"; do
        wine_use_prefix "$prefix"
        wine_stop
    done
}
