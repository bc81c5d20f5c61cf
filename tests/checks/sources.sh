# Sourced: `our_sources` prints our C++ sources, one per line, relative to the root. Asks git where the root is
# a repository of its own, so that build folders and whatever else lies about stay out.
our_sources() {
    if [ "$(git rev-parse --show-toplevel 2>/dev/null)" = "$(pwd -P)" ]; then
        git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h'
    else
        find . \( -path './build*' -o -path './out' -o -path './.*' \) -prune -o \
            -type f \( -name '*.cpp' -o -name '*.h' \) -print | sed 's|^\./||'
    fi | while IFS= read -r file; do [ -f "$file" ] && printf '%s\n' "$file"; done | sort
}
