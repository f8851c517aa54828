# Sourced by the other scripts: installs the Debian packages the build needs when any is missing.
# Usage: tessary_install_deps [extra-package...]

TESSARY_PACKAGES=(cmake ninja-build g++ qt6-base-dev qt6-base-dev-tools libqscintilla2-qt6-dev
                  libgl1-mesa-dev)

tessary_install_deps() {
    local wanted=("${TESSARY_PACKAGES[@]}" "$@") missing=() p
    for p in "${wanted[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "Tessary needs these Debian packages, which are not installed:" >&2
        echo "    ${missing[*]}" >&2
        echo "Install them as root:  apt-get install -y ${missing[*]}" >&2
        return 1
    fi
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Configures and builds into $1 (the build directory); further arguments go to cmake.
tessary_build() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
    cmake --build "$dir"
}
