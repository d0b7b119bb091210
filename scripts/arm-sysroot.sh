#!/usr/bin/env bash
# Builds the Debian root of one ARM architecture that its cross build links against and
# qemu-user runs its tests in: Debian's own packages for that architecture, extracted (no
# maintainer script runs) into a folder of their own. The build machine's packages stay as they
# are, so a lagging mirror index of one architecture can't hold back or conflict with another.
# Does nothing when FOLDER already holds these packages.
# Usage: arm-sysroot.sh DEBIAN-ARCHITECTURE FOLDER
set -euo pipefail
arch=$1
root=$2

packages=(
  libc6-dev libstdc++6
  libegl-dev libgles-dev libegl-mesa0 libgl1-mesa-dri
  android-liblog-dev android-libetc1-dev android-platform-frameworks-native-headers
  libglm-dev libgtest-dev libgmock-dev libpng-dev libgif-dev libx11-dev
)
. /etc/os-release
wanted="$(printf '%s\n' "$VERSION_CODENAME" "$arch" "${packages[@]}")"
stamp="$root/.talveqam-packages"
[ -f "$stamp" ] && [ "$(cat "$stamp")" = "$wanted" ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  echo "setup: building $root needs root" >&2
  exit 1
fi
echo "setup: extracting Debian's $arch packages into $root" >&2
mkdir -p "$(dirname "$root")"
rm -rf "$root.new"
mirror=http://deb.debian.org/debian
mmdebstrap --quiet --variant=extract --architectures="$arch" \
  --include="$(IFS=,; echo "${packages[*]}")" "$VERSION_CODENAME" "$root.new" \
  "deb $mirror $VERSION_CODENAME main" "deb $mirror $VERSION_CODENAME-updates main"
# Links to absolute paths would lead into the build machine's own tree: make them relative.
find "$root.new" -type l -lname '/*' -print0 | while IFS= read -r -d '' link; do
  target="$root.new$(readlink "$link")"
  ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$target")" "$link"
done
echo "$wanted" >"$root.new/.talveqam-packages"
rm -rf "$root"
mv "$root.new" "$root"
