#!/usr/bin/env bash
# Refreshes the README's pictures under docs/images/ from a demo run with the build folder $1:
# one frame of each sample, picked where the effect shows best.
set -euo pipefail
build=${1:-build}
bash scripts/demo.sh "$build"
cp out/frame-0080.png docs/images/watercolour.png
cp out/sparkle-ring/frame-0026.png docs/images/sparkle-ring.png
cp out/ripple/frame-0028.png docs/images/ripple.png
echo "doc-pictures: docs/images/watercolour.png, sparkle-ring.png and ripple.png"
