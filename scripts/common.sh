# Shared by the scripts beside it: where things are, and what is installed when missing.

set -eu
cd "$(dirname "$0")/.."

jobs=$(nproc)
times=

# exists PATTERN: whether a file matches.
exists() {
    for file in $1; do
        [ ! -e "$file" ] || return 0
    done
    return 1
}

# install_packages COMMAND_OR_FILE=PACKAGE...: installs the Debian packages whose command, or
# file (a pattern with a leading slash), is not there. Works as root and as a user with sudo.
install_packages() {
    missing=
    for pair; do
        what=${pair%%=*}
        case $what in
            /*) exists "$what" || missing="$missing ${pair#*=}" ;;
            *) command -v "$what" >/dev/null 2>&1 || missing="$missing ${pair#*=}" ;;
        esac
    done
    [ -n "$missing" ] || return 0
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "Please install what stands for these Debian packages:$missing" >&2
        exit 1
    fi
    echo "Installing$missing"
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq update >/dev/null
    # shellcheck disable=SC2086
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends \
        $missing >/dev/null
}

# What the program itself needs.
install_build_packages() {
    install_packages g++=g++ cmake=cmake ninja=ninja-build \
        '/usr/lib/*/cmake/Qt6Gui/Qt6GuiConfig.cmake=qt6-base-dev' \
        /usr/lib/qt6/bin/lrelease=qt6-l10n-tools \
        '/usr/lib/*/qt6/plugins/imageformats/libqtiff.so=qt6-image-formats-plugins'
}

# build PRESET [CMAKE OPTION...]: configures and builds in build/PRESET, quietly unless it fails.
# With $targets set, builds those alone.
build() {
    preset=$1
    shift
    mkdir -p build
    log=build/$preset.log
    # shellcheck disable=SC2086
    if ! { cmake --preset "$preset" "$@" &&
        cmake --build --preset "$preset" -j "$jobs" ${targets:+--target $targets}; } \
        >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "The build failed; all of it is in $log" >&2
        exit 1
    fi
}

# step NAME COMMAND...: a part of a longer script, whose time report_times() shows.
step() {
    name=$1
    shift
    echo "== $name"
    started=$(date +%s)
    "$@"
    times="$times$(printf '%5d s  %s' $(($(date +%s) - started)) "$name")
"
}
report_times() {
    echo "== Times"
    printf '%s' "$times"
}
