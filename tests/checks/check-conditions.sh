#!/usr/bin/env bash
# Only one header knows versions of Qt and platforms; all others ask it.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/sources.sh"
cd "$here/../.." || exit 2
only=controls/decodedtextview/decodedtextcompat.h
mapfile -t sources < <(our_sources | grep -vx "$only")
[ "${#sources[@]}" -gt 0 ] || { echo "no sources found" >&2; exit 2; }

platform='Q_(OS|WS|CC)_[A-Z0-9_]+|_?_?WIN(32|64|NT)_*|WIN_|_WIN|__MINGW[0-9A-Z_]*|__APPLE__|__linux(__)?|__unix(__)?|__GNUC__|__clang__|_MSC_VER|__has_include'
found=$(
    grep -nE '\bQT_VERSION(_CHECK|_MAJOR|_MINOR)?\b|\bQT_DEPRECATED_SINCE\b' "${sources[@]}" /dev/null
    grep -nE "^[[:space:]]*#[[:space:]]*(el)?if(n?def)?\b.*\b($platform)\b" "${sources[@]}" /dev/null
)
[ -z "$found" ] && exit 0
printf 'conditions on a version of Qt or a platform outside %s:\n%s\n' "$only" "$found" >&2
exit 1
