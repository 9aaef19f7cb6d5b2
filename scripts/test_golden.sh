#!/usr/bin/env bash
# Holds builds by other compilers and without optimisation to the golden table: the library and the
# runner alone, with every kernel target. ./test runs the table on the optimised build by GCC.
# Installs what it needs; no terminal needed. The last line is the count.
set -euo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
passed=0
failed=0
skipped=0
targets=(generic avx2 avx512)

# build PRESET: in a shell of its own, since a failed build ends the caller.
build() (
    orv_build "$1" orv golden_runner
)

# table PRESET TARGET: leaves a log, the names of the cases that ran and the exit code.
table() {
    local folder="$orv_root/build/$1" log="$orv_root/build/log/$1-$2" code=0
    "$folder/tests/golden/golden_runner" "$folder/src/liborv.so" \
        "$orv_root/tests/golden/cases.csv" --target "$2" --trace \
        >"$log.log" 2>"$log.trace" </dev/null || code=$?
    echo "$code" >"$log.code"
}

# judge PRESET TARGET: each counts as one; quiet when it passed.
judge() {
    local log="$orv_root/build/log/$1-$2" code
    code=$(cat "$log.code")
    case $code in
        0) passed=$((passed + 1)) ;;
        77)
            skipped=$((skipped + 1))
            echo "$1 $2 $(grep '^skipped' "$log.log")"
            ;;
        *)
            failed=$((failed + 1))
            echo "$1 $2: FAILED with code $code"
            head -n 40 "$log.log"
            echo "Last: $(tail -n 1 "$log.trace")"
            ;;
    esac
}

orv_need g++ clang cmake ninja-build
mkdir -p "$orv_root/build/log"
for preset in golden-gcc-debug golden-clang-debug golden-clang-release; do
    if ! build "$preset"; then
        failed=$((failed + 1))
        continue
    fi
    for target in "${targets[@]}"; do
        table "$preset" "$target" &
    done
    wait
    for target in "${targets[@]}"; do
        judge "$preset" "$target"
    done
done

echo "$passed passed, $failed failed, $skipped skipped"
[ "$failed" -eq 0 ]
