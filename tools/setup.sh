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

# What it takes to build the builder and a port; with ccache the next port takes seconds.
build_packages=(g++ cmake ninja-build ccache libgif-dev libpng-dev libsndfile1-dev libsdl2-dev
    libsdl2-ttf-dev libfontconfig-dev libopenal-dev)
# What the builder itself calls to unpack archives.
archive_packages=(unzip libarchive-tools p7zip-full)
# What the checks need beyond that.
check_packages=(libgtest-dev nlohmann-json3-dev clang clang-format clang-tidy
    g++-mingw-w64-x86-64-posix python3
    libegl1 libgl1-mesa-dri)
