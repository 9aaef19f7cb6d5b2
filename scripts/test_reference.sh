#!/usr/bin/env bash
# Builds the reference of the public headers and checks that nothing is missing in it and that a
# missing description fails the build. The pages stay in build/reference/reference/html.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
source scripts/setup.sh
orv_need "${orv_run_packages[@]}" doxygen >&2

log=build/log/reference.log
mkdir -p build/log
if ! cmake -S . -B build/reference -G Ninja -DORV_BUILD_CLI=OFF >"$log" 2>&1 ||
    ! cmake --build build/reference --target reference >>"$log" 2>&1; then
    tail -n 40 "$log"
    echo "0 passed, 1 failed"
    exit 1
fi
python3 -B scripts/check_reference.py build/reference/Doxyfile build/reference/reference
