#!/usr/bin/env bash
# Installs the Debian packages in a system with nothing else on it, under build/bare, and looks whether they do there what
# they do here: zulmap draws the demo's map, byte for byte, and the examples, built against the installed headers, leave
# the files that they leave here. The bare system comes from where this machine's apt gets its packages. Needs root or sudo.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
bare=$PWD/build/bare log=$PWD/build/bare.log

# in_bare SCRIPT: as root in the bare system, quiet unless it fails.
in_bare() {
    chroot "$bare" /bin/sh -euc "export DEBIAN_FRONTEND=noninteractive LC_ALL=C; $1" >>"$log" 2>&1 ||
        { tail -n 20 "$log" >&2; return 1; }
}

# as_user SCRIPT: as nobody in the bare system, in a folder of its own.
as_user() {
    chroot --userspec=nobody:nogroup "$bare" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/tmp/out \
        /bin/sh -euc "mkdir -p /tmp/out; cd /tmp/out; $1"
}

make_bare() {
    local codename mirror
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' "Release: $codename" 'Component: main' |
        head -n 1)
    [ -n "$mirror" ] || { echo "apt has no source for $codename" >&2; return 1; }
    rm -rf --one-file-system "$bare"
    debootstrap --variant=minbase "$codename" "$bare" "$mirror" >"$log" 2>&1 || { tail -n 5 "$log" >&2; return 1; }
    rm -rf "$bare/etc/apt"
    cp -a /etc/apt "$bare/etc/apt"
    cp -a /usr/share/keyrings/. "$bare/usr/share/keyrings"
    cp -L /etc/resolv.conf "$bare/etc/resolv.conf"
    mountpoint -q "$bare/proc" || mount -t proc proc "$bare/proc"
    in_bare 'apt-get update -qq'
}

install_and_run() {
    trap 'umount "$bare/proc" 2>/dev/null || true' EXIT
    make_bare
    echo "Bare system: $(chroot "$bare" dpkg-query -f '.\n' -W | wc -l) packages"
    cp build/package/packages/*.deb "$bare/tmp"

    in_bare 'apt-get install -y -qq --no-install-recommends /tmp/libzulgraphics1_*.deb /tmp/zulmap_*.deb'
    echo "With the program: $(chroot "$bare" dpkg-query -f '.\n' -W | wc -l) packages"
    as_user "zulmap --version; cd /usr/share/zulgraphics; zulmap render ${demo_map[*]} -o /tmp/out/world.png"

    in_bare 'apt-get install -y -qq --no-install-recommends /tmp/libzulgraphics-dev_*.deb g++ pkg-config cmake make'
    mkdir -p "$bare/tmp/tests/package"
    cp -r tests/package/consumer "$bare/tmp/tests/package"
    ln -s /usr/share/doc/libzulgraphics-dev/examples "$bare/tmp/examples"
    as_user 'for source in /tmp/examples/*.cpp; do
            name=$(basename "$source" .cpp)
            g++ -std=c++17 "$source" $(pkg-config --cflags --libs zulgraphics zulstore) -o "$name"
            mkdir "$name.run"
            (cd "$name.run" && ../"$name" >output.txt)
        done
        cmake -S /tmp/tests/package/consumer -B consumer >/dev/null
        cmake --build consumer >/dev/null'
}

if [ "${1:-}" = --inside ]; then
    install_and_run
    exit
fi

need_packages debootstrap "${build_packages[@]}"
scripts/package.sh
scripts/demo.sh >/dev/null
cmake --build --preset release --target examples >/dev/null
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
# In a mount namespace of its own: no mount outlives it, however it ends.
"${as_root[@]}" unshare --mount scripts/test-package.sh --inside

cmp build/world.png "$bare/tmp/out/world.png"
echo "The installed program draws the demo's map: $(stat -c %s build/world.png) bytes, the same"
for source in examples/*.cpp; do
    name=$(basename "$source" .cpp)
    rm -rf "build/$name.run"
    mkdir "build/$name.run"
    (cd "build/$name.run" && "../release/tests/examples/$name" >output.txt)
    diff -r "build/$name.run" "$bare/tmp/out/$name.run"
    echo "examples/$name.cpp, built there: the same files"
done
