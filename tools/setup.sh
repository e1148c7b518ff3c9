# Sourced by ./play and ./check: installs what is missing, on Debian and its kin.

# need_packages <package>...
# Installs the packages that are not there yet, as root or with sudo. Without either it prints the
# one line to run and ends the script.
need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Some packages are missing. As root, run:" >&2
            echo "    apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get -qq update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq install -y --no-install-recommends "${missing[@]}" >/dev/null
}

# What it takes to build a port; with ccache the next one takes seconds. The builder's package
# recommends the same.
mapfile -t port_packages <"$(dirname "${BASH_SOURCE[0]}")/port-packages.txt"
build_packages=("${port_packages[@]}" nlohmann-json3-dev)
# What the builder itself calls to unpack archives.
archive_packages=(unzip libarchive-tools p7zip-full)
# What the checks need beyond that.
check_packages=(libgtest-dev clang clang-format clang-tidy g++-mingw-w64-x86-64-posix python3
    libegl1 libgl1 libgl1-mesa-dri xvfb xdotool wine64)
