#!/bin/sh
# Peak memory of restoring 24 megapixels: through the C face, and with a picture file through
# the tool. Usage: bench/peak_memory.sh BUILD_DIR [PICTURE]
set -eu
build=$1
picture=${2:-}
for scheme in LOD AFI ADI AOS AMOS; do
    for sigma in 0 1; do
        /usr/bin/time -f "%M KB  C face, $scheme, sigma $sigma" \
            "$build/bench/photo_memory" "$scheme" "$sigma"
    done
done
if [ -n "$picture" ]; then
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    /usr/bin/time -f "%M KB  tool" "$build/tools/orv/orv" restore "$picture" "$folder/result.ppm"
fi
