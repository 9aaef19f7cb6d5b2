# shellcheck shell=bash
# Runs Windows programs without a display; to be sourced after scripts/setup.sh. Everything lies
# under build/windows: Wine's own folder, and for 32-bit programs a small 32-bit Debian, since Wine
# for them would otherwise ask for a second architecture on this machine.

wine_root="$orv_root/build/windows"
wine_prefix="$wine_root/prefix"
wine32_debian="$wine_root/debian-i386"
# Why programs of that kind can't run; empty when they can.
wine64_lack=
wine32_lack=

# Keeps Wine from asking for Mono and Gecko, which nothing here needs, and from making folders for
# menus in the home directory.
wine_settings=(WINEDEBUG=-all "WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=" DISPLAY=)

# wine64_prepare: makes Wine's folder, once.
wine64_prepare() {
    if ! command -v wine >/dev/null; then
        wine64_lack="wine isn't installed"
    elif [ ! -f "$wine_prefix/ready" ]; then
        rm -rf "$wine_prefix"
        mkdir -p "$wine_prefix"
        # Says nothing of use when it fails; whether programs run is seen from their output.
        wine64_run "$wine_root" wineboot -i >"$orv_root/build/log/wineboot.log" 2>&1 &&
            touch "$wine_prefix/ready"
    fi
}

# wine64_run FOLDER PROGRAM [ARGUMENT...]: runs a program of that folder in it.
wine64_run() {
    local folder=$1
    shift
    (cd "$folder" && timeout -k 5 "${wine_seconds:-120}" \
        env "${wine_settings[@]}" WINEPREFIX="$wine_prefix" wine "$@" </dev/null)
}

wine64_end() {
    if [ -d "$wine_prefix" ]; then
        env "${wine_settings[@]}" WINEPREFIX="$wine_prefix" timeout 20 wineserver -k \
            >/dev/null 2>&1 || true
    fi
}

# wine32_why_not: prints what keeps the 32-bit Debian from being made.
wine32_why_not() {
    if [ "$(id -u)" -ne 0 ]; then
        echo "a 32-bit Debian beside this one needs root"
    elif ! command -v debootstrap >/dev/null; then
        echo "debootstrap isn't installed"
    elif ! unshare --mount true 2>/dev/null; then
        echo "this machine lets nobody mount"
    elif [ -z "$(wine32_site)" ]; then
        echo "apt has no Debian site"
    fi
}

# The site that apt is set up with.
wine32_site() {
    apt-get indextargets --format "\$(SITE)" "Codename: $(wine32_codename)" \
        'Created-By: Packages' 2>/dev/null | head -n 1
}

wine32_codename() {
    sed -n 's/^VERSION_CODENAME=//p' /etc/os-release
}

# wine32_prepare: makes the 32-bit Debian and Wine's folder in it, once. Sets wine32_lack.
wine32_prepare() {
    if [ -f "$wine32_debian/ready" ]; then
        return
    fi
    orv_know_archives
    wine32_lack=$(wine32_why_not)
    if [ -n "$wine32_lack" ]; then
        return
    fi
    orv_say "Making a 32-bit Debian with Wine in $wine32_debian: once, some minutes"
    if ! wine32_make >"$orv_root/build/log/wine32.log" 2>&1 </dev/null; then
        wine32_lack="wine32 can't be installed: $(grep -v '^ *$' \
            "$orv_root/build/log/wine32.log" | tail -n 1)"
    fi
}

wine32_make() {
    rm -rf "$wine32_debian"
    timeout 900 debootstrap --arch=i386 --variant=minbase "$(wine32_codename)" \
        "$wine32_debian" "$(wine32_site)" || return 1
    chroot "$wine32_debian" /bin/true || return 1
    timeout 900 chroot "$wine32_debian" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends wine wine32 || return 1
    chroot "$wine32_debian" apt-get clean
    mkdir -p "$wine32_debian/stage" "$wine32_debian/prefix"
    wine32_run "$wine_root" wineboot -i || return 1
    touch "$wine32_debian/ready"
    # Its server lives on for a while and would look for programs in the folder of this call.
    wine32_end
}

# wine32_run FOLDER PROGRAM [ARGUMENT...]: as wine64_run. The mounts end with the program.
wine32_run() {
    local folder=$1
    shift
    timeout -k 5 "${wine_seconds:-120}" unshare --mount sh -c '
        debian=$1 folder=$2
        shift 2
        mount -t proc proc "$debian/proc" && mount --rbind /dev "$debian/dev" &&
            mount --bind "$folder" "$debian/stage" && exec chroot "$debian" "$@"' \
        sh "$wine32_debian" "$folder" \
        env "${wine_settings[@]}" WINEPREFIX=/prefix HOME=/ \
        sh -c 'cd /stage && exec wine "$@"' sh "$@" \
        </dev/null
}

wine32_end() {
    if [ -f "$wine32_debian/ready" ]; then
        chroot "$wine32_debian" env WINEPREFIX=/prefix timeout 20 wineserver -k \
            >/dev/null 2>&1 || true
    fi
}
