# shellcheck shell=sh
# Shell functions that ./run and ./test share. To be read by them, from the top folder.

# shellcheck disable=SC2034
BUILD_PACKAGES="g++ cmake ninja-build qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev libqwt-qt5-dev libeigen3-dev libboost-dev libtsl-hopscotch-map-dev libzstd-dev pkg-config esbuild qttranslations5-l10n fonts-dejavu-core"

# Installs those of the named Debian packages that are missing.
install_packages() {
    missing=
    for package in "$@"; do
        status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=
        [ "$status" = installed ] || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing:$missing"
    if [ "$(id -u)" -ne 0 ]; then
        echo "Please run as root once, or: apt-get install$missing" >&2
        exit 1
    fi
    apt-get update -qq
    # shellcheck disable=SC2086
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build_preset PRESET [TARGET [OPTION...]]: configures a preset, with the options, where that was not done yet, and
# builds it. What is up to date stays as it is.
build_preset() {
    preset=$1
    target=${2:-all}
    shift "$(($# < 2 ? $# : 2))"
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" "$@"
    cmake --build --preset "$preset" --target "$target"
}
