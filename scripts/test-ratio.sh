#!/usr/bin/env bash
# Tests may be at most a third of the code: counts the non-blank lines under tests/ against
# every non-blank source line of the repository (images, Markdown and binary files are not
# code), prints both and the ratio, and fails above the limit.
set -euo pipefail
cd "$(dirname "$0")/.."
limit=${TEST_RATIO_LIMIT:-0.33}

if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  list_files() { git ls-files --cached --others --exclude-standard -z; }
else
  list_files() { find . -path ./.git -prune -o -type f -printf '%P\0'; }
fi

counts=$(list_files | grep -zvE '\.(md|png|jpe?g|gif)$' | while IFS= read -r -d '' f; do
  [ -f "$f" ] || continue
  n=$(grep -cIv '^[[:space:]]*$' -- "$f" || true)  # -I: binary files count 0
  printf '%s %s\n' "${n:-0}" "$f"
done | awk '{ all += $1; if ($2 ~ /^tests\//) tests += $1 }
            END { printf "%d %d\n", tests, all }')
read -r tests all <<<"$counts"

awk -v t="$tests" -v a="$all" -v limit="$limit" 'BEGIN {
  ratio = a ? t / a : 0
  printf "test-ratio: %d test lines of %d source lines: %.3f (limit %.2f)\n", t, a, ratio, limit
  exit ratio > limit
}'
