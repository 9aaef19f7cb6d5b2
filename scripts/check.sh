#!/usr/bin/env bash
# The checks that need no build of the project. Each counts as one; the last line is the count.
# Needs clang-format, a compiler and Python 3; .ci/run installs them.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
log=$(mktemp)
trap 'rm -f "$log"' EXIT
passed=0
failed=0

# check NAME COMMAND...: quiet when it passes, but for notes.
check() {
    local name=$1
    shift
    if "$@" >"$log" 2>&1; then
        passed=$((passed + 1))
        echo "check $name: passed"
        grep 'note:' "$log"
    else
        failed=$((failed + 1))
        echo "check $name: FAILED"
        head -n 60 "$log"
    fi
}

tracked() {
    git -c safe.directory='*' ls-files -z "$@" | while IFS= read -r -d '' file; do
        if [ -f "$file" ]; then
            printf '%s\0' "$file"
        fi
    done
}

format() {
    tracked '*.h' '*.cpp' '*.inl' '*.c' | xargs -0 clang-format --dry-run -Werror
}

# Every header compiles on its own.
headers() {
    tracked 'src/*.h' | xargs -0 -P "$(nproc)" -I{} \
        c++ -std=c++20 -fsyntax-only -Wall -Wextra -Isrc -Iinclude -x c++ -include {} /dev/null
}

# The public headers are C99 and C++ alike.
public_headers() {
    local header include
    while IFS= read -r -d '' header; do
        include="#include \"${header#include/}\""
        printf '%s\nint used;\n' "$include" |
            cc -std=c99 -pedantic-errors -Wall -Wextra -Werror -fsyntax-only -Iinclude -x c - ||
            return 1
        printf '%s\nint used;\n' "$include" |
            c++ -std=c++11 -pedantic-errors -Wall -Wextra -Werror -fsyntax-only -Iinclude \
                -x c++ - || return 1
    done < <(tracked 'include/*.h')
}

shell() {
    local file
    for file in run test .ci/run scripts/*.sh; do
        bash -n "$file" || return 1
    done
}

scripts() {
    (cd scripts && python3 -B scripts_test.py)
}

export PYTHONDONTWRITEBYTECODE=1
check format format
check layers scripts/check_layers.py
check names scripts/check_names.py
check sizes scripts/check_sizes.py
check quirks scripts/check_quirks.py
check words scripts/check_words.py
check references scripts/check_references.py
check links scripts/check_links.py
check headers headers
check public-headers public_headers
check shell shell
check scripts scripts
check photos scripts/check_photos.py
check tables scripts/make_elementary_tables.py --check
check presets scripts/update_preset_docs.py --check

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
