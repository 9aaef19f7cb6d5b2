#!/usr/bin/env bash
# Builds orv.dll for 64-bit and 32-bit Windows, looks into both and runs programs on them under
# Wine: a host with a DIB section, whose results have to be those of the library of this machine,
# and the golden table. Installs what it needs; no terminal needed. The last line is the count.
#
# 32-bit programs need Wine in a 32-bit Debian, which is made in build/windows where that can be
# done (root, network, 1 GB); ORV_SKIP_WINE32=1 leaves it out.
set -uo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
source "$orv_root/tests/windows/wine.sh"
cd "$orv_root" || exit 1
windows_packages=(g++-mingw-w64-x86-64 g++-mingw-w64-i686 wine wine64 debootstrap)
passed=0
failed=0
skipped=0
stage="$wine_root/stage"
log="build/log/windows.log"
version=$(sed -n 's/^project(orv VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# check NAME COMMAND...: each counts as one; quiet when it passes.
check() {
    local name=$1
    shift
    if "$@" >"$log" 2>&1 </dev/null; then
        passed=$((passed + 1))
        return 0
    fi
    failed=$((failed + 1))
    echo "windows $name: FAILED"
    head -n 40 "$log"
    return 1
}

skip() {
    skipped=$((skipped + 1))
    echo "windows $1: skipped: $2"
}

machine_of() {
    case $1 in
        mingw64) echo x86_64 ;;
        mingw32) echo i686 ;;
    esac
}

# build PRESET TARGET...: in a shell of its own, since a failed build ends the caller.
build() (
    orv_build "$@"
)

# What can be seen without running anything.
look_into() {
    local preset=$1 machine=$2 property
    local folder="build/$preset/src"
    for property in exports imports image entry-point import-library version; do
        check "$preset $property" tests/windows/check_dll.py "$property" "$folder/orv.dll" \
            --machine "$machine" --version "$version" \
            --import-library "$folder/liborv.dll.a" --layers "$folder"/liborv_*.a
    done
    check "$preset calling conventions" "$machine-w64-mingw32-g++" -std=c++20 -Wall -Wextra \
        -Werror -fsyntax-only -Iinclude tests/windows/calling_convention.cpp
}

# A second build of the same sources elsewhere, with another name for each path, has the same
# bytes. A cache of objects would hide what differs.
same_bytes() {
    local preset=$1
    local elsewhere="$wine_root/another/place/for-$preset"
    local file
    rm -rf "$elsewhere"
    mkdir -p "$elsewhere"
    # With their times, so that a later run compiles what has changed alone.
    git -c safe.directory='*' ls-files -z -- ':!examples/photos' ':!docs/images' |
        xargs -0 cp -p --parents -t "$elsewhere" || return 1
    (cd "$elsewhere" && export CCACHE_DISABLE=1 &&
        cmake --preset "$preset" -B "../built-$preset" &&
        cmake --build "../built-$preset" --target orv) || return 1
    for file in orv.dll liborv.dll.a; do
        cmp "build/$preset/src/$file" "$elsewhere/../built-$preset/src/$file" || return 1
    done
}

# Puts what is to run beside the library, compiled as the example's first lines say.
fill_stage() {
    local preset=$1 machine=$2 folder="$stage/$2"
    local cc="$machine-w64-mingw32-gcc" strict=(-std=c99 -pedantic -Wall -Wextra -Werror)
    mkdir -p "$folder/out"
    rm -f "$folder"/out/*
    cp "build/$preset/src/orv.dll" "$folder/" &&
        "$cc" "${strict[@]}" -Iinclude examples/windows/dib_host.c -o "$folder/dib_host.exe" \
            -lgdi32 -lmsimg32 &&
        "$cc" "${strict[@]}" -Iinclude tests/windows/dll_probe.c -o "$folder/dll_probe.exe" \
            -lversion
}

# The host prints the lines that its twin prints on the library of this machine.
host_agrees() {
    local run=$1 folder=$2
    "$run" "$folder" dib_host.exe out >"$folder/out/host.txt"
    tr -d '\r' <"$folder/out/host.txt" >"$folder/out/host-lines.txt"
    tests/windows/linux_twin.py build/release/src/liborv.so "$folder/out" \
        >"$folder/out/twin.txt" &&
        diff "$folder/out/twin.txt" "$folder/out/host-lines.txt"
}

probe_agrees() {
    local run=$1 folder=$2
    local expected=("version ORV $version" "65 reports, the argument in at most 2 places: yes")
    if [ "$(basename "$folder")" = i686 ]; then
        expected+=("a picture of 40000 pixels: a handle" "its square: null")
    fi
    expected+=("20 loads, still there: no")
    "$run" "$folder" dll_probe.exe orv.dll >"$folder/out/probe.txt"
    diff <(printf '%s\n' "${expected[@]}") <(tr -d '\r' <"$folder/out/probe.txt")
}

# run_all PRESET RUN LACK: with LACK everything is skipped.
run_all() {
    local preset=$1 run=$2 lack=$3
    local folder
    folder="$stage/$(machine_of "$preset")"
    if [ -n "$lack" ]; then
        skip "$preset host" "$lack"
        skip "$preset probe" "$lack"
        return
    fi
    check "$preset host" host_agrees "$run" "$folder"
    check "$preset probe" probe_agrees "$run" "$folder"
}

mkdir -p build/log "$wine_root"
if ! (orv_need "${orv_run_packages[@]}" "${windows_packages[@]}"); then
    skip "everything" "the packages it needs can't be installed"
    echo "0 passed, 0 failed, 1 skipped"
    exit 0
fi
trap 'wine64_end; wine32_end' EXIT
check "library of this machine" build release orv
for preset in mingw64 mingw32; do
    if check "$preset build" build "$preset" orv; then
        look_into "$preset" "$(machine_of "$preset")"
        check "$preset same bytes" same_bytes "$preset"
        check "$preset programs" fill_stage "$preset" "$(machine_of "$preset")"
    fi
done

wine64_prepare
run_all mingw64 wine64_run "$wine64_lack"
if [ -n "${ORV_SKIP_WINE32:-}" ]; then
    wine32_lack="ORV_SKIP_WINE32 is set"
else
    wine32_prepare
fi
run_all mingw32 wine32_run "$wine32_lack"

echo "$passed passed, $failed failed, $skipped skipped"
[ "$failed" -eq 0 ]
