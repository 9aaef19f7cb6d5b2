#!/usr/bin/env bash
# Builds the Debian packages and uses them as a stranger would: lintian reads them, a fresh Debian
# installs them, the C example is compiled there with the command that the documents give, the
# tool restores a picture, and purging leaves nothing behind.
#
# Quiet but for failures; the last line is the count. The fresh Debian is a chroot by debootstrap,
# from the archive that apt has; where no chroot can be made its checks are skipped. Everything
# stays in build/packages and build/package-check.
set -uo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
source "$orv_root/scripts/counting.sh"
cd "$orv_root" || exit 1
orv_need "${orv_run_packages[@]}" dpkg-dev file xz-utils lintian debootstrap

area=packages
work="$orv_root/build/packages"
log="$work/check.log"
fresh="$work/chroot"
# As deep below the root as other builds, so that their objects in the cache of compilers fit.
debs="$orv_root/build/package-check"
example=examples/c/restore_bmp.c
photo=examples/photos/chelsea-noisy.png
orv="$debs/tools/orv/orv"
# What a host developer types in the folder of the example.
compile='cc restore_bmp.c -o restore_bmp $(pkg-config --cflags --libs orv)'

# Takes the chroot away with whatever is still mounted in it.
clean() {
    local mounted
    for mounted in $(awk -v root="$fresh/" 'index($2, root) == 1 { print $2 }' /proc/mounts |
        sort -r); do
        umount -l "$mounted"
    done
    rm -rf --one-file-system "$fresh" "$work/probe"
}

# The flags of the release build, for the same reason.
build_packages() {
    rm -f "$debs"/*.deb
    cmake --preset package -B "$debs" -DORV_WERROR=ON && cmake --build "$debs" && pack
}

pack() {
    cpack --config "$debs/CPackConfig.cmake" -B "$debs"
}

three_packages() {
    local arch version
    arch=$(dpkg --print-architecture)
    version=$(sed -n '1s/.*(\(.*\)).*/\1/p' cmake/debian/changelog)
    diff <(cd "$debs" && ls ./*.deb) <(printf './%s_'"${version}_$arch"'.deb\n' liborv-dev liborv1 orv)
}

equal_twice() {
    sha256sum "$debs"/*.deb >"$work/first.sums"
    pack && sha256sum --check "$work/first.sums"
}

read_by_lintian() {
    lintian --allow-root --fail-on error,warning "$debs"/*.deb
}

# field PACKAGE FIELD
field() {
    dpkg-deb --field "$debs/$1"_*.deb "$2"
}

dependencies() {
    local version
    version=$(field liborv1 Version)
    [ "$(field liborv-dev Depends)" = "liborv1 (= $version)" ] &&
        [ "$(field liborv1 Multi-Arch)" = same ] && [ "$(field liborv-dev Multi-Arch)" = same ] &&
        [ "$(field orv Multi-Arch)" = foreign ] &&
        field liborv1 Depends | grep -q 'libstdc++6' && field orv Depends | grep -q libvips42 &&
        ! field orv Depends | grep -q liborv
}

# Why no chroot can be made here; nothing when one can.
no_chroot() {
    if [ "$(id -u)" -ne 0 ]; then
        echo "debootstrap needs root"
    elif ! { mkdir -p "$work/probe/proc" && mknod "$work/probe/null" c 1 3 &&
        : >"$work/probe/null"; } 2>/dev/null; then
        echo "devices can't be made in build/"
    elif ! mount -t proc proc "$work/probe/proc" 2>/dev/null; then
        echo "nothing can be mounted"
    elif [ -z "$(archives)" ]; then
        echo "apt has no archive of Debian $codename"
    fi
    umount "$work/probe/proc" 2>/dev/null
    rm -rf --one-file-system "$work/probe"
}

# The archives of this Debian that apt has: address, release, component.
archives() {
    apt-get indextargets --format '$(SITE) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' 'Origin: Debian' | grep " $codename[^ ]* main$" | sort -u
}

# A minimal Debian with the archives, keys and network settings of this machine's apt.
make_fresh() {
    local site part
    site=$(archives | awk -v release="$codename" '$2 == release { print $1; exit }')
    debootstrap --variant=minbase "$codename" "$fresh" "$site" || return 1
    archives | sed 's/^/deb /' >"$fresh/etc/apt/sources.list"
    for part in trusted.gpg trusted.gpg.d keyrings auth.conf auth.conf.d; do
        if [ -e "/etc/apt/$part" ]; then
            cp -a "/etc/apt/$part" "$fresh/etc/apt/"
        fi
    done
    apt-config dump |
        grep -E '^Acquire::(Check-Valid-Until|Check-Date|ForceIPv|Retries|http|https)' \
            >"$fresh/etc/apt/apt.conf.d/90host"
    echo 'Acquire::Languages "none";' >>"$fresh/etc/apt/apt.conf.d/90host"
    # It is thrown away: no need to wait for the disk.
    echo force-unsafe-io >"$fresh/etc/dpkg/dpkg.cfg.d/90unsafe-io"
    cp -L /etc/resolv.conf /etc/hosts "$fresh/etc/"
    mount -t proc proc "$fresh/proc"
    mkdir "$fresh/host"
    cp "$debs"/*.deb "$work/in.bmp" "$photo" "$fresh/host/"
    inside 'apt-get update'
}

# inside COMMANDS: runs them in the chroot, in the folder that holds the packages.
inside() {
    env -u LD_PRELOAD PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TMPDIR=/tmp LC_ALL=C \
        DEBIAN_FRONTEND=noninteractive chroot "$fresh" /bin/sh -ec "cd /host; $1"
}

# What the chroot holds, but for what apt and dpkg write about their own work.
list_fresh() {
    inside "find / -xdev \( -path /proc -o -path /host -o -path /tmp -o -path /var/lib/apt \
        -o -path /var/cache/apt -o -path /var/lib/dpkg -o -path /var/log \) -prune -o -print
        find /var/lib/dpkg/info; ldconfig -p" | sort
}

# Compiler and pkg-config, and what the packages depend on, so that they alone come and go.
prepare_fresh() {
    inside 'apt-get install -y --no-install-recommends gcc libc6-dev pkg-config
        needed=$(apt-get install -s --no-install-recommends ./*.deb | sed -n "s/^Inst \([^ ]*\).*/\1/p" |
            grep -vx -e liborv1 -e liborv-dev -e orv)
        apt-get install -y --no-install-recommends $needed' && list_fresh >"$work/before.list"
}

compare_pictures() {
    cmp "$work/out.bmp" "$fresh/host/out.bmp" && ! cmp -s "$work/in.bmp" "$work/out.bmp"
}

# The example built and run on this machine, with the library as it was built.
example_outside() {
    cc "$example" -o "$work/restore_bmp" -Iinclude -L"$debs/src" -lorv -Wl,-rpath,"$debs/src" &&
        "$work/restore_bmp" "$work/in.bmp" "$work/out.bmp"
}

tool_restores() {
    "$orv" restore "$photo" "$work/out.ppm" --force &&
        inside "orv restore $(basename "$photo") out.ppm" &&
        cmp "$work/out.ppm" "$fresh/host/out.ppm"
}

purge_leaves_nothing() {
    inside 'apt-get purge -y liborv1 liborv-dev orv' && list_fresh >"$work/after.list" &&
        diff "$work/before.list" "$work/after.list"
}

rm -f "$work"/in.* "$work"/out.*
mkdir -p "$work"
clean
trap clean EXIT
trap 'exit 130' INT TERM
codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")

check build build_packages || finish
check three-packages three_packages
check equal-twice equal_twice
check lintian read_by_lintian
check dependencies dependencies
check picture "$orv" blur "$photo" "$work/in.bmp" --force
check example-outside example_outside

orv_know_archives
reason=$(no_chroot)
if [ -n "$reason" ]; then
    skip fresh-debian "$reason"
    finish
fi
check fresh-debian make_fresh || finish
check fresh-dependencies prepare_fresh || finish
check install-library inside 'apt-get install -y ./liborv1_*.deb ./liborv-dev_*.deb'
check loader-knows-library inside 'ldconfig -p | grep liborv.so.1'
check compile-example inside "cp /usr/share/doc/liborv-dev/examples/restore_bmp.c .; $compile"
check run-example inside './restore_bmp in.bmp out.bmp'
check same-picture compare_pictures
check install-tool inside 'apt-get install -y ./orv_*.deb'
check tool-version inside "orv --version | grep -F '$("$orv" --version)'"
check tool-restores tool_restores
check manual-page inside 'gzip -dc /usr/share/man/man1/orv.1.gz | grep "^\.TH ORV 1"'
check completions inside 'bash -c ". /usr/share/bash-completion/completions/orv && complete -p orv"
    test -s /usr/share/zsh/vendor-completions/_orv
    test -s /usr/share/fish/vendor_completions.d/orv.fish'
check purge purge_leaves_nothing
finish
