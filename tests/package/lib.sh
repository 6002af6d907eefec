# What the tests of the package have in common. Sourced; $root is the project's folder.

wine_run=$root/scripts/wine-run
classes=(
    "{01F8BA96-06C1-4888-B9FF-8B60F3A1221A}|Selvane Exposure Controls"
    "{01F8BA96-06C1-4888-B9FF-8B60F3A1221B}|Selvane Feature Controls"
    "{C423731D-D4C5-41EE-B17D-A311A7B27DEC}|Selvane Lens Controls"
    "{A522337D-5324-4123-9DA4-84D17EF1EADA}|Selvane Color Controls"
)

# windows PROGRAM...: with line ends of this side; what Wine and the program complain of is kept for a failure.
windows() {
    WINEDEBUG=fixme-all "$wine_run" "$@" </dev/null 2>"$place/complaints" | tr -d '\r'
}

# windows_path FILE: Wine shows the root directory as drive Z.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

fail() {
    echo "$(basename "$0"): $1" >&2
    exit 1
}

# expect WHAT TEXT LINE: TEXT has a line that is LINE.
expect() {
    grep -qxF -- "$3" <<<"$2" || fail "$1: no line \"$3\" in:"$'\n'"$2"$'\n'"$(cat "$place/complaints")"
    echo "$1: $3"
}

class_key() { echo "HKEY_CLASSES_ROOT\\CLSID\\${1%%|*}"; }
# value KEY NAME: /ve for the default value; empty if it is not there.
value() { windows reg query "$@" | sed -nE 's/^ .*    REG_SZ    //p' || true; }

# expect_classes DLL: the pages are registered, from there.
expect_classes() {
    local class key
    for class in "${classes[@]}"; do
        key=$(class_key "$class")
        expect "name" "$(value "$key" /ve)" "${class##*|}"
        expect "server" "$(value "$key\\InprocServer32" /ve)" "$1"
        expect "threads" "$(value "$key\\InprocServer32" /v ThreadingModel)" Both
    done
}

# expect_no_classes WHAT: none of the pages is registered any more.
expect_no_classes() {
    local class
    for class in "${classes[@]}"; do
        if windows reg query "$(class_key "$class")" >"$place/left"; then
            fail "$1 left $(cat "$place/left")"
        fi
    done
}
