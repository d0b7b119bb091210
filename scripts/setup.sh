#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the samples need, and the Debian roots
# of arm64 and armhf that the ARM builds link against and run their tests in. `setup.sh demo`
# installs only what the library, the samples and qam-preview need.
# Idempotent: does nothing when everything is already there.
set -euo pipefail

packages=(
  cmake make g++ pkg-config
  libglm-dev
  libegl-dev libgles-dev libegl-mesa0 libgl1-mesa-dri
  android-liblog-dev android-platform-frameworks-native-headers
  openjdk-17-jdk-headless
  libpng-dev libgif-dev libx11-dev
)
demo=false
[ "${1:-}" = demo ] && demo=true
$demo || packages+=(
  clang clang-format libclang-rt-14-dev
  android-libetc1-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth
  glslang-tools
  g++-aarch64-linux-gnu g++-arm-linux-gnueabihf qemu-user-static mmdebstrap
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}" >&2
  if [ "$(id -u)" -ne 0 ]; then
    echo "setup: these packages are missing and installing them needs root: ${missing[*]}" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

$demo && exit 0
sysroots=/opt/talveqam/sysroots
bash "$(dirname "$0")/arm-sysroot.sh" arm64 "$sysroots/aarch64-linux-gnu"
bash "$(dirname "$0")/arm-sysroot.sh" armhf "$sysroots/arm-linux-gnueabihf"
