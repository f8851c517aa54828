# Sourced by the other scripts: installs the Debian packages the build needs when any is missing.
#   tessary_install_deps [extra-package...]      required: stops with a message when they are
#                                                missing and this is not root
#   tessary_install_optional [package...]        installed when missing and this is root;
#                                                otherwise the features that use them are skipped

TESSARY_PACKAGES=(cmake ninja-build g++ qt6-base-dev qt6-base-dev-tools libqscintilla2-qt6-dev
                  libgl1-mesa-dev nlohmann-json3-dev)
tessary_apt_updated=0

tessary_missing() {
    local p
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || echo "$p"
    done
}

tessary_apt_install() {
    echo "Installing: $*"
    export DEBIAN_FRONTEND=noninteractive
    if [ "$tessary_apt_updated" = 0 ]; then
        apt-get update -qq
        tessary_apt_updated=1
    fi
    apt-get install -y -qq --no-install-recommends "$@"
}

tessary_install_deps() {
    local missing
    mapfile -t missing < <(tessary_missing "${TESSARY_PACKAGES[@]}" "$@")
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "Tessary needs these Debian packages, which are not installed:" >&2
        echo "    ${missing[*]}" >&2
        echo "Install them as root (apt-get install -y ${missing[*]}), or run this script as root." >&2
        return 1
    fi
    tessary_apt_install "${missing[@]}"
}

tessary_install_optional() {
    local missing
    mapfile -t missing < <(tessary_missing "$@")
    [ ${#missing[@]} -eq 0 ] || [ "$(id -u)" -ne 0 ] && return 0
    tessary_apt_install "${missing[@]}"
}

# Configures and builds into $1 (the build directory); further arguments go to cmake.
tessary_build() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
    cmake --build "$dir"
}
