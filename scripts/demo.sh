#!/usr/bin/env bash
# Renders with the tools of the build folder $1 into out/.
set -euo pipefail
build=${1:-build}
mkdir -p out
"$build/examples/qam-smoke" out/smoke.png
echo "demo: wrote out/smoke.png"
