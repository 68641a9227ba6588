#!/usr/bin/env bash
# Installs the packages of a folder in a scratch copy of this system, tries them as their users would, removes them, and
# looks for what stays behind:  debian.sh FOLDER   (as root; this system itself is not changed)
set -euo pipefail
packages=$(realpath "$1")
tests=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")

# A mount namespace of its own ends with the script, and everything in it.
if [ "${2:-}" != inside ]; then
    [ "$(id -u)" -eq 0 ] || { echo "debian.sh: only root can make a scratch system" >&2 && exit 1; }
    if ! unshare --mount --propagation private mount -t tmpfs tmpfs /mnt; then
        echo "NOT TRIED: this machine lets nobody mount a scratch system; the packages were made and no more" >&2
        exit 0
    fi
    exec unshare --mount --propagation private bash "${BASH_SOURCE[0]}" "$packages" inside
fi

fail() {
    echo "debian.sh: $*" >&2
    exit 1
}

# What packages install into; caches and the records of dpkg aside.
files() {
    (cd "$root" && find etc usr opt -not -name ld.so.cache -not -path '*/__pycache__*' | sort)
}

scratch=$(mktemp -d)
trap 'cd / && umount -R "$scratch" && rmdir "$scratch"' EXIT
mount -t tmpfs tmpfs "$scratch"
root=$scratch/root
mkdir "$scratch/changes" "$scratch/work" "$root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$scratch/changes,workdir=$scratch/work" "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mkdir "$root/trial"
cp "$packages"/*.deb "$root/trial"
cp -r "$tests/consumer" "$tests/checks/links.py" "$root/trial"
mapfile -t names < <(for file in "$packages"/*.deb; do dpkg-deb --field "$file" Package; done)
for name in "${names[@]}"; do
    ! dpkg-query -W "$name" >/dev/null 2>&1 || fail "$name is installed on this system already"
done

files >"$scratch/before"
chroot "$root" sh -c 'dpkg --install /trial/*.deb' >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"

# Every file of a package stands where it should, with rights for all to read it.
for name in "${names[@]}"; do
    chroot "$root" dpkg --verify "$name" || fail "$name is damaged"
done
(cd "$root" && find usr -newer "$scratch/before" -type f -not -perm -0444 | grep .) && fail "files that not all may read"

env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 chroot "$root" bash -xeu -o pipefail -c '
    cd /trial
    [ "$(tuvo eval "6*7")" = 42 ]
    [ "$(tuvo convert 210000 --type Pressure --from mm,ton,sec --to m,kg,sec --plain)" = 2.1e+11 ]
    tuvo units --check >checked
    tuvo info >info
    grep "^Library .* /usr/lib/.*/libTuvoUtil.so.24" info
    ! readelf -d /usr/bin/tuvo /usr/lib/*/libTuvoUtil.so.24 | grep -E "RPATH|RUNPATH"
    man tuvo | cat >manual
    grep "tuvo convert --factor" manual
    [ -f /usr/share/bash-completion/completions/tuvo ]
    python3 links.py /usr/share/doc/libtuvoutil-dev
    for package in libtuvoutil24 libtuvoutil-dev tuvo; do
        for notice in CLI11 stb_image libbacktrace; do grep "=== $notice" /usr/share/doc/$package/copyright; done
        zcat /usr/share/doc/$package/changelog.gz | grep "^tuvoutil (24"
    done
    # Programs that are packaged with it run with later ones.
    grep "^libTuvoUtil 24 libtuvoutil24 (>= " /var/lib/dpkg/info/libtuvoutil24.shlibs

    cmake -G Ninja -S consumer -B built >configured
    cmake --build built >compiled
    ./built/strings
    ./built/consumer /usr/share/tuvoutil
    g++ -std=c++20 consumer/Main.cpp $(pkg-config --cflags --libs TuvoUtil) -o by-pkg-config
    ./by-pkg-config "$(pkg-config --variable=datadir TuvoUtil)"
    gdb -nx -q -batch -iex "set debuginfod enabled off" -ex start -ex "info pretty-printer .*basutl TuvoUtil" ./built/strings >printers
    grep BuString printers
' >"$scratch/log" 2>&1 || fail "$(tail -n 30 "$scratch/log")"

chroot "$root" dpkg --purge "${names[@]}" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
rm -rf "$root/trial"
files >"$scratch/after"
diff "$scratch/before" "$scratch/after" || fail "files stay behind"
echo "installed, tried and removed: ${names[*]}"
