# Building, for the scripts that need programs. Sourced; $root is the project's folder.

# build_preset PRESET LOG [TARGET...]: configures and builds, quiet unless it fails.
build_preset() {
    local preset=$1 log=$2 targets=()
    shift 2
    if [ $# -gt 0 ]; then targets=(--target "$@"); fi
    mkdir -p "${log%/*}"
    if ! (cd "$root" && cmake --preset "$preset" &&
        cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}") >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "the build of $preset failed; all of it is in $log" >&2
        return 1
    fi
}
