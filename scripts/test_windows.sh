#!/usr/bin/env bash
# Builds orv.dll and orv.exe for 64-bit and 32-bit Windows, looks into both libraries and runs
# programs on them under Wine: a host with a DIB section, whose results have to be those of the
# library of this machine, and the golden table. The 64-bit orv.exe runs beside the tool of this
# machine. Installs what it needs; no terminal needed. The last line is the count.
#
# 32-bit programs need Wine in a 32-bit Debian, which is made in build/windows where that can be
# done (root, network, 1 GB); ORV_SKIP_WINE32=1 leaves it out.
set -uo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
source "$orv_root/scripts/counting.sh"
source "$orv_root/tests/windows/wine.sh"
cd "$orv_root" || exit 1
windows_packages=(g++-mingw-w64-x86-64 g++-mingw-w64-i686 wine wine64 debootstrap)
area=windows
stage="$wine_root/stage"
log="build/log/windows.log"
version=$(sed -n 's/^project(orv VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# cases NAME COMMAND...: a program whose last line is the count of its cases.
cases() {
    local name=$1 before=$failed
    shift
    "$@" >"$log" 2>&1 </dev/null
    add_count "$(tail -n 1 "$log")" || failed=$((failed + 1))
    if [ "$failed" -gt "$before" ]; then
        echo "$area $name: FAILED"
        tail -n 60 "$log"
    fi
}

machine_of() {
    case $1 in
        mingw64) echo x86_64 ;;
        mingw32) echo i686 ;;
    esac
}

# build PRESET TARGET...: in a shell of its own, since a failed build ends the caller. Configures
# anew, since presets change.
build() (
    orv_reconfigure=yes
    orv_build "$@"
)

# What can be seen without running anything.
look_into() {
    local preset=$1 machine=$2 property
    local folder="build/$preset/src"
    for property in exports imports image entry-point import-library version kernels; do
        check "$preset $property" tests/windows/check_dll.py "$property" "$folder/orv.dll" \
            --machine "$machine" --source "$orv_root" --version "$version" \
            --import-library "$folder/liborv.dll.a" --layers "$folder"/liborv_*.a
    done
    check "$preset calling conventions" "$machine-w64-mingw32-g++" -std=c++20 -Wall -Wextra \
        -Werror -fsyntax-only -Iinclude tests/windows/calling_convention.cpp
}

# A second build of the same sources in another folder has the same bytes.
same_bytes() {
    local preset=$1 elsewhere="$wine_root/another" file
    (cd "$elsewhere" && cmake --preset "$preset" -DORV_BUILD_GOLDEN=OFF &&
        cmake --build "build/$preset" --target orv) || return 1
    for file in orv.dll liborv.dll.a; do
        cmp "build/$preset/src/$file" "$elsewhere/build/$preset/src/$file" || return 1
    done
}

# With their times, so that a later run compiles what has changed alone.
copy_sources() {
    local elsewhere="$wine_root/another"
    mkdir -p "$elsewhere"
    find "$elsewhere" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} + || return 1
    git -c safe.directory='*' ls-files -z -- ':!examples/photos' ':!docs/images' |
        xargs -0 cp -p --parents -t "$elsewhere"
}

# Puts what is to run beside the library, compiled as the example's first lines say.
fill_stage() {
    local preset=$1 machine=$2 folder="$stage/$2"
    local cc="$machine-w64-mingw32-gcc" strict=(-std=c99 -pedantic -Wall -Wextra -Werror)
    mkdir -p "$folder/out"
    rm -f "$folder"/out/*
    cp "build/$preset/src/orv.dll" "build/$preset/tests/golden/golden_runner.exe" \
        tests/golden/cases.csv "$folder/" &&
        "$cc" "${strict[@]}" -Iinclude examples/windows/dib_host.c -o "$folder/dib_host.exe" \
            -lgdi32 -lmsimg32 &&
        "$cc" "${strict[@]}" -Iinclude tests/windows/dll_probe.c -o "$folder/dll_probe.exe" \
            -lversion
}

# What `cmake --install` gives is found by CMake, and a program is linked with it.
install_and_link() {
    local preset=$1 machine=$2 file
    local tree="$wine_root/installed/$machine" consumer="$wine_root/consumer-$machine"
    rm -rf "$tree" "$consumer"
    cmake --install "build/$preset" --prefix "$tree" || return 1
    for file in bin/orv.dll lib/liborv.dll.a include/orv/orv.h include/orv/orv_constants.h; do
        [ -f "$tree/$file" ] || { echo "not installed: $file"; return 1; }
    done
    cmake -G Ninja -S tests/install/cmake_consumer -B "$consumer" \
        --toolchain "$orv_root/cmake/toolchains/$preset.cmake" \
        -Dorv_DIR="$tree/lib/cmake/orv" &&
        cmake --build "$consumer" && cp "$consumer/consumer.exe" "$stage/$machine/"
}

# The ZIP file that CPack makes holds what Windows developers need.
zip_is_whole() {
    local preset=$1 name file
    name="orv-$version-win${preset#mingw}"
    rm -rf "$wine_root/zip"
    cpack --config "build/$preset/CPackConfig.cmake" -B "$wine_root/zip" || return 1
    for file in bin/orv.dll bin/orv.exe lib/liborv.dll.a lib/orv.def include/orv/orv.h \
        include/orv/orv_constants.h share/doc/orv/LICENSE \
        share/doc/orv/examples/windows/dib_host.c; do
        python3 -m zipfile -l "$wine_root/zip/$name.zip" | grep "^$name/$file " || return 1
    done
}

linked_agrees() {
    local run=$1 folder=$2
    cc -Iinclude tests/install/consumer.c -o "$folder/consumer" build/release/src/liborv.so \
        -Wl,-rpath,"$orv_root/build/release/src" &&
        "$folder/consumer" >"$folder/out/consumer-here.txt" || return 1
    "$run" "$folder" consumer.exe | tr -d '\r' | diff "$folder/out/consumer-here.txt" -
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
        expected+=("a picture of 40000 pixels: a handle" "Alpha from table is 0.5"
            "its square: null")
    fi
    expected+=("20 loads, still there: no")
    "$run" "$folder" dll_probe.exe orv.dll >"$folder/out/probe.txt"
    diff <(printf '%s\n' "${expected[@]}") <(tr -d '\r' <"$folder/out/probe.txt")
}

# Every line of the golden table. A program that was killed, or that Wine could not start, leaves
# another last line. The runner says when this processor lacks the target.
table() {
    local name=$1 run=$2 folder=$3 target=$4
    local lines="$folder/out/golden-$target.txt" cases
    cases=$(($(wc -l <tests/golden/cases.csv) - 1))
    wine_seconds=600 "$run" "$folder" golden_runner.exe orv.dll cases.csv --target "$target" \
        2>/dev/null | tr -d '\r' >"$lines"
    if grep -q '^skipped: ' "$lines"; then
        skip "$name" "$(sed -n 's/^skipped: //p' "$lines")"
    else
        check "$name" last_line_is "$cases passed, 0 failed" "$lines"
    fi
}

last_line_is() {
    head -n 40 "$2"
    [ "$(tail -n 1 "$2")" = "$1" ]
}

# What the example's README shows is what the host prints on its main thread.
readme_agrees() {
    diff <(sed -n 's/^    //p' examples/windows/README.md |
        sed -n '/^main thread/,/^ORVIColorToGrey/p') \
        <(sed '/^second thread/,$d' "$1/out/host-lines.txt")
}

# run_all PRESET RUN LACK TARGET...: with LACK everything is skipped.
run_all() {
    local preset=$1 run=$2 lack=$3
    local folder target name
    shift 3
    folder="$stage/$(machine_of "$preset")"
    for name in host linked probe; do
        if [ -n "$lack" ]; then
            skip "$preset $name" "$lack"
        else
            check "$preset $name" "${name}_agrees" "$run" "$folder"
        fi
    done
    for target in "$@"; do
        name="$preset golden table, $target"
        if [ -n "$lack" ]; then
            skip "$name" "$lack"
        else
            table "$name" "$run" "$folder" "$target"
        fi
    done
}

rm -rf "$stage"
mkdir -p build/log "$wine_root"
orv_need "${orv_run_packages[@]}" "${windows_packages[@]}"
trap 'wine64_end; wine32_end' EXIT
check "library and tool of this machine" build release orv orv_tool
check "copy of the sources" copy_sources
for preset in mingw64 mingw32; do
    if check "$preset build" build "$preset"; then
        look_into "$preset" "$(machine_of "$preset")"
        check "$preset same bytes" same_bytes "$preset"
        check "$preset programs" fill_stage "$preset" "$(machine_of "$preset")"
        check "$preset install" install_and_link "$preset" "$(machine_of "$preset")"
        check "$preset zip" zip_is_whole "$preset"
    fi
done

wine64_prepare
run_all mingw64 wine64_run "$wine64_lack" generic avx2 avx512
if [ -z "$wine64_lack" ]; then
    check "mingw64 README" readme_agrees "$stage/x86_64"
    cases "mingw64 orv.exe" tests/windows/tool_test.py build/mingw64/tools/orv/orv.exe \
        "$wine_prefix" build/release/tools/orv/orv
else
    skip "mingw64 orv.exe" "$wine64_lack"
fi
if [ -n "${ORV_SKIP_WINE32:-}" ]; then
    wine32_lack="ORV_SKIP_WINE32 is set"
else
    wine32_prepare
fi
run_all mingw32 wine32_run "$wine32_lack" generic

finish
