#!/usr/bin/env bash
# Makes docs/images/methods.jpg: one tile a method, left half before, right half after, at
# 100 percent. Needs ImageMagick and a DejaVu font.
#
#     scripts/contact_sheet.sh build/user/tools/orv/orv
set -euo pipefail

orv=${1:?usage: scripts/contact_sheet.sh path/to/orv}
photos=examples/photos
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
width=284
height=190
tiles=()

# tile NAME BEFORE X Y AFTER: the part at X, Y of both pictures, half and half.
tile() {
    local name=$1 before=$2 x=$3 y=$4 after=$5 half=$((width / 2))
    convert "$before" -crop "${half}x${height}+$x+$y" +repage "$folder/left.png"
    convert "$after" -crop "${half}x${height}+$((x + half))+$y" +repage "$folder/right.png"
    convert "$folder/left.png" "$folder/right.png" +append +repage \
        -fill white -draw "rectangle $((half - 1)),0 $half,$height" \
        -background white -splice 0x24 -fill '#222' -font DejaVu-Sans -pointsize 14 \
        -gravity north -annotate +0+3 "$name" "$folder/tile-$name.png"
    tiles+=("$folder/tile-$name.png")
}

# method NAME IN X Y [OPTIONS]: runs the verb of that name.
method() {
    local name=$1 source=$2 x=$3 y=$4
    shift 4
    "$orv" "$name" "$source" "$folder/$name.png" --quiet "$@"
    tile "$name" "$source" "$x" "$y" "$folder/$name.png"
}

soft=$folder/soft.png
grey=$folder/grey.png
fur=$folder/fur.png
"$orv" blur "$photos/chelsea.png" "$soft" --sigma 1.2 --quiet
scripts/make_grey.py "$photos/chelsea.png" "$grey"
scripts/side_by_side.py "$photos/chelsea.png" "$fur" --part 90,60,200,180

method restore "$photos/chelsea-noisy.png" 90 60
method denoise "$photos/coffee-noisy.png" 160 60 --auto
method wavelet "$photos/chelsea-noisy.png" 90 60 --auto
method susan "$photos/coffee-noisy.png" 160 60
method curvature "$photos/chelsea-noisy.png" 90 60
method deblur "$soft" 90 60
method shock "$soft" 90 60
method blur "$photos/coffee.png" 160 60 --sigma 4
method retinex "$photos/rocket.jpg" 190 230
method homomorphic "$photos/rocket.jpg" 190 230
"$orv" recolor "$photos/astronaut.png" "$photos/coffee.png" "$folder/recolored.png" --quiet
tile recolor "$photos/astronaut.png" 80 20 "$folder/recolored.png"
"$orv" colorize "$grey" "$fur" "$folder/colorized.png" --quiet
tile colorize "$grey" 90 60 "$folder/colorized.png"

montage "${tiles[@]}" -tile 3x -geometry +5+5 -background white "$folder/sheet.png"
convert "$folder/sheet.png" -strip -quality 90 -sampling-factor 4:4:4 docs/images/methods.jpg
echo "wrote docs/images/methods.jpg"
