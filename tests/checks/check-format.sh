#!/usr/bin/env bash
# Every source is formatted as .clang-format says.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/sources.sh"
cd "$here/../.." || exit 2
mapfile -t sources < <(our_sources)
[ "${#sources[@]}" -gt 0 ] || { echo "no sources found" >&2; exit 2; }
clang-format --dry-run -Werror --ferror-limit=5 "${sources[@]}"
