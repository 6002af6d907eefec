# FFmpeg for Windows, a program that nobody here wrote. Sourced. It is fetched once into a cache outside the project, and
# used only if it is the one whose checksum stands here.

ffmpeg_package=@ffmpeg-installer/win32-x64@4.1.0
ffmpeg_checksum=c8abc49e7be62dde8e12972af373959e0076a7b8dc8040eb45978e0608f8781e
ffmpeg=${XDG_CACHE_HOME:-$HOME/.cache}/selvane_page/ffmpeg-4.1.0.exe

ffmpeg_is_the_one() { sha256sum --status -c <<<"$ffmpeg_checksum  $1" 2>/dev/null; }

# ffmpeg_fetch_into FOLDER: says why it could not.
ffmpeg_fetch_into() {
    command -v npm >/dev/null || { echo "npm, which fetches it, is not installed"; return 1; }
    (cd "$1" && timeout 120 npm pack --silent "$ffmpeg_package" </dev/null >/dev/null 2>&1) ||
        { echo "the package $ffmpeg_package cannot be fetched"; return 1; }
    tar -xzf "$1"/*.tgz -C "$1" package/ffmpeg.exe ||
        { echo "the package $ffmpeg_package is not as it was"; return 1; }
    ffmpeg_is_the_one "$1/package/ffmpeg.exe" ||
        { echo "the program in $ffmpeg_package is not the one that is known"; return 1; }
    mkdir -p "${ffmpeg%/*}"
    mv -f "$1/package/ffmpeg.exe" "$ffmpeg"
}

# ffmpeg_ensure: makes sure that $ffmpeg is there; says why it could not.
ffmpeg_ensure() {
    local scratch failed=0
    if ffmpeg_is_the_one "$ffmpeg"; then return 0; fi
    scratch=$(mktemp -d)
    ffmpeg_fetch_into "$scratch" || failed=1
    rm -rf "$scratch"
    return "$failed"
}
