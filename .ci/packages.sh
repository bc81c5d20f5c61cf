# Sourced by the scripts at the root: `need_packages NAME ...` installs those Debian packages that are missing, as root or
# through sudo; where apt-get does not exist it only names them.

need_packages() {
    local missing=() name log
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "No apt-get here; this needs the equivalents of the Debian packages: $*"
        return 0
    fi
    for name in "$@"; do
        case "$(dpkg-query -W -f='${Status}' "$name" 2>/dev/null)" in
            *" ok installed") ;;
            *) missing+=("$name") ;;
        esac
    done
    [ "${#missing[@]}" -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    log=$(mktemp)
    if "${as_root[@]}" apt-get -q update >"$log" 2>&1 &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get -qy install --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
        rm -f "$log"
        return 0
    fi
    tail -n 30 "$log" >&2
    echo "The packages could not be installed; the whole log: $log" >&2
    return 1
}

# What a build with Qt 5 takes; the program's look needs the style and a font.
build_packages=(g++ cmake ninja-build qtbase5-dev qttools5-dev qttools5-dev-tools libpugixml-dev
    qt5-style-plugin-plastique fonts-dejavu-core)
# What the tests, the build with Qt 6 and the checks take beyond that.
test_packages=(qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libxml2-utils clang-format)

# Qt complains where a session has no folder for its sockets (services, containers).
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    runtime_folder=$(mktemp -d)
    trap 'rm -rf "$runtime_folder"' EXIT
    export XDG_RUNTIME_DIR="$runtime_folder"
fi
