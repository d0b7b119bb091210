#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in their own build directory and runs each for a
# bounded time from its corpus in the tree: seeds of valid input and every input that ever
# failed, which each run replays first. Exits non-zero when a run finds a crash, an
# out-of-bounds access, a use after free, undefined behaviour or a leak.
#   scripts/fuzz.sh [build-dir]      (default: build-fuzz)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath -m "${1:-$root/build-fuzz}")
jobs=${JOBS:-2}
targets=(ModelObject Host)
declare -A seconds=([ModelObject]=60 [Host]=150)

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DTALVEQAM_FUZZ=ON -DTALVEQAM_BENCHMARKS=OFF >/dev/null
cmake --build "$build" -j "$jobs" --target "${targets[@]/%/Fuzz}"
# The tests' environment: the host fuzzer draws on Mesa's headless llvmpipe, whose own lasting
# allocations are not ours.
. "$build/test-environment.sh"

# libFuzzer adds what it finds to the first corpus directory: work on a copy.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$build/fuzz-artifacts"

for target in "${targets[@]}"; do
    cp -r "$root/tests/fuzz/corpus/$target" "$work/$target"
    echo "fuzz: $target for ${seconds[$target]} s" >&2
    # close_fd_mask=2: the library's log lines for refused inputs would drown the run;
    # libFuzzer and the sanitizers still report on their own copy of stderr.
    # A fixed seed, so the verdict depends on the tree and not on luck (FUZZ_SEED=0: a new one).
    "$build/tests/fuzz/${target}Fuzz" -max_total_time="${seconds[$target]}" -timeout=60 \
        -seed="${FUZZ_SEED:-1}" -close_fd_mask=2 \
        -artifact_prefix="$build/fuzz-artifacts/$target-" "$work/$target"
done
# set -e stopped the script at any finding; reaching here means every target ran clean.
echo "fuzz: ${#targets[@]} passed, 0 failed"
