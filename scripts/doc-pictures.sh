#!/usr/bin/env bash
# Refreshes the README's pictures under docs/images/ from a demo run with the build folder $1:
# one frame of each sample, picked where the effect shows best, and a golden-frame failure: the
# ripple's golden frames against a run whose first tap is a tenth of the width further right.
set -euo pipefail
build=${1:-build}
bash scripts/demo.sh "$build"
cp out/frame-0080.png docs/images/watercolour.png
cp out/sparkle-ring/frame-0026.png docs/images/sparkle-ring.png
cp out/ripple/frame-0028.png docs/images/ripple.png
sed 's/35% 40%/45% 40%/' examples/assets/ripple.txt >out/ripple-moved.txt
"$build/examples/preview/qam-preview" "$build/examples/effects/libqam_ripple.so" \
    --bg examples/assets/dusk.png --script out/ripple-moved.txt --frames 100 --size 144x256 \
    --compare examples/golden/ripple --out out/golden-diff || true
cp out/golden-diff/diff-0020.png docs/images/golden-diff.png
echo "doc-pictures: docs/images/watercolour.png, sparkle-ring.png, ripple.png and golden-diff.png"
