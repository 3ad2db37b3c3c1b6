# Sourced by the other scripts: installs what is missing, makes wine and the libraries of other targets ready, knows what
# the demo draws.

build_packages=(g++ make cmake ninja-build pkg-config
    libpixman-1-dev libfreetype-dev libfontconfig1-dev fonts-liberation fonts-dejavu-core
    libsqlite3-dev
    libgdal-dev libpng-dev libcli11-dev libsdl2-dev libpugixml-dev
    libgtest-dev libgmock-dev
    libagg-dev libcairo2-dev
    xvfb xauth xdotool)

# To see that every public member is documented.
docs_packages=(doxygen)

# To build the fuzzers, and for findings with lines.
fuzz_packages=(clang-14 libclang-rt-14-dev llvm-14)

# To count what the tests reach.
coverage_packages=(clang-14 libclang-rt-14-dev llvm-14 python3-minimal)

# To make Debian packages.
deb_packages=(dpkg-dev file)

# To build for 64-bit Windows and to run what was built.
windows_packages=(cmake ninja-build g++-mingw-w64-x86-64-posix googletest wine wine64)

# To build for 32-bit ARM and to run what was built.
arm_packages=(cmake ninja-build pkg-config g++ g++-arm-linux-gnueabihf googletest qemu-user
    libfontconfig1-dev fonts-liberation fonts-dejavu-core)

# The target's own, which are unpacked below the build and never installed.
arm_libraries=(libpixman-1-dev libfreetype-dev libfontconfig-dev libpng-dev libstdc++6)

# What `zulmap render` draws for the demo, in the folder of the map data.
demo_map=(countries-50m.geojson --size 1600x800 --graticule 15 --labels name)

# need_packages NAME...: installs the Debian packages that are not there yet, with sudo when not root.
need_packages() {
    local name missing=() as_root=()
    for name in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "root or sudo is needed to install: ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    "${as_root[@]}" apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# prepare_wine: where wine keeps its files from now on, and makes that folder: two programs that find none would make it
# both at once, and get in each other's way.
prepare_wine() {
    export WINEPREFIX=$PWD/build/windows/wine WINEDEBUG=-all
    mkdir -p "$WINEPREFIX"
    wineboot --init >/dev/null 2>&1 || { echo "wine cannot be made ready in $WINEPREFIX" >&2; return 1; }
}

# prepare_arm: the target's libraries in build/arm/sysroot. They come from where this machine has its own packages, and
# are as well signed, but apt keeps its state for them below the build: the machine learns of no other architecture.
prepare_arm() {
    local root=$PWD/build/arm/sysroot apt=$PWD/build/arm/apt packed link from_apt
    [ "$(cat "$root/libraries" 2>/dev/null)" != "${arm_libraries[*]}" ] || return 0
    rm -rf "$root" "$apt"
    mkdir -p "$root" "$apt/lists/partial" "$apt/archives/partial"
    touch "$apt/status"
    from_apt=(apt-get -qq -o APT::Architecture=armhf -o APT::Architectures=armhf -o APT::Sandbox::User=
        -o "Dir::State=$apt" -o "Dir::State::status=$apt/status" -o "Dir::Cache=$apt" -o Acquire::Retries=3)
    # A list that cannot be had matters only when something is missing from the others.
    "${from_apt[@]}" update >&2 || true
    "${from_apt[@]}" install -y --download-only --no-install-recommends "${arm_libraries[@]}" >&2
    for packed in "$apt"/archives/*.deb; do
        dpkg-deb -x "$packed" "$root"
    done
    # What a program of the target looks up below here it does not look up on this machine, whose fonts are meant.
    rm -rf "${root:?}/etc" "$root/var" "$root/usr/share/fonts"
    find "$root" -type l -lname '/*' | while read -r link; do
        ln -sfr "$root$(readlink "$link")" "$link"
    done
    rm -rf "$apt"
    echo "${arm_libraries[*]}" >"$root/libraries"
}
