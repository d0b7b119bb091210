#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the samples need.
# Idempotent: does nothing when every package is already there.
set -euo pipefail

packages=(
  cmake make g++ clang clang-format libclang-rt-14-dev pkg-config
  libglm-dev
  libegl-dev libgles-dev libegl-mesa0 libgl1-mesa-dri
  android-liblog-dev android-libetc1-dev
  openjdk-17-jdk-headless
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  libpng-dev libgif-dev libx11-dev xvfb xauth
  glslang-tools
  g++-aarch64-linux-gnu g++-arm-linux-gnueabihf
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}" >&2
if [ "$(id -u)" -ne 0 ]; then
  echo "setup: these packages are missing and installing them needs root: ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
