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

# wine_has_driver: whether the prefix is complete. A registry that was not written when its server ended has no driver,
# and programs find no windows there.
wine_has_driver() {
    [ -e "$WINEPREFIX/.ready" ] && grep -qs '^"Graphics"=' "$WINEPREFIX/user.reg"
}

# wine_make null|x11: a registry that names the driver before the first desktop asks for one, and the rest of the prefix.
wine_make() {
    wine_stop
    rm -f "$WINEPREFIX"/*.reg "$WINEPREFIX/.update-timestamp" "$WINEPREFIX/.ready"
    printf '%s\n' 'WINE REGISTRY Version 2' '' '[Software\\Wine\\Drivers]' "\"Graphics\"=\"$1\"" >"$WINEPREFIX/user.reg"
    wine_start
    [ -z "${SELVANE_GLOBAL_FLAGS:-}" ] || "$WINE" reg add 'HKLM\System\CurrentControlSet\Control\Session Manager' \
        /v GlobalFlag /t REG_DWORD /d "$SELVANE_GLOBAL_FLAGS" /f </dev/null >/dev/null 2>&1
    "$WINE" reg query 'HKCU\Software\Wine\Drivers' /v Graphics </dev/null >/dev/null 2>&1 || {
        echo "no Wine prefix: $WINEPREFIX did not come up" >&2
        return 1
    }
    : >"$WINEPREFIX/.ready"
}

wine_start() {
    "$WINESERVER" -p300 </dev/null >/dev/null 2>&1 || true
    "$WINE" wineboot </dev/null >/dev/null 2>&1 || true
}

# wine_boot null|x11: makes sure that the prefix is complete and its server runs. Wine's services inherit
# the streams of the command that starts them and keep them open, so they must never see a caller's pipe.
# "null" runs all window logic without a display; "x11" shows windows on $DISPLAY. SELVANE_GLOBAL_FLAGS are those that
# every process of a new prefix gets.
wine_boot() {
    if [ "$1" = null ]; then unset DISPLAY; fi
    if wine_has_driver && "$WINESERVER" -k0 2>/dev/null; then return 0; fi
    (
        flock 9
        if wine_has_driver; then wine_start 9>&-; else wine_make "$1" 9>&-; fi
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
