#!/usr/bin/env bash
# Renders the sample effects of the build folder $1 over the bundled backgrounds into out/:
# the watercolour (two strokes) in out/, the sparkle ring and the ripple in folders of their own,
# each with its frame costs. The clock is fixed at 30 frames a second, so the pictures are the
# same on every machine.
set -euo pipefail
build=${1:-build}
preview="$build/examples/preview/qam-preview"
effects="$build/examples/effects"

"$preview" "$effects/libqam_watercolour.so" --bg examples/assets/paper.png \
    --script examples/assets/watercolour.txt --frames 150 --out out --fixed-clock --stats
"$preview" "$effects/libqam_sparkle_ring.so" --bg examples/assets/dusk.png \
    --script examples/assets/sparkle-ring.txt --frames 56 --out out/sparkle-ring --fixed-clock \
    --stats
"$preview" "$effects/libqam_ripple.so" --bg examples/assets/dusk.png \
    --script examples/assets/ripple.txt --frames 100 --out out/ripple --fixed-clock --stats
echo
echo "demo: the watercolour is in out/: preview.gif, contact-sheet.png and frame-*.png;"
echo "      the sparkle ring in out/sparkle-ring/, the ripple in out/ripple/"
