#!/usr/bin/env bash
# Draws the windows with the shop of samples/ in them; no screen is needed.
#   docs/make_screenshots.sh                   those in the README, into docs/pictures
#   docs/make_screenshots.sh FOLDER [NAME...]  all of them, or those named, light and dark, in two sizes
set -euo pipefail
folder=$(realpath -m "${1:-$(dirname "$0")/pictures}")
source "$(dirname "$0")/../.ci/setup.sh"
cd "$root"

scales=(1 2)
names=("${@:2}")
if [ $# -eq 0 ]; then
  scales=(2)
  names=(frmOverview frmMain frmMaterial_edit frmReports)
fi

install_missing "${run_packages[@]}"
cmake -S . -B build/screenshots -G Ninja -D CMAKE_BUILD_TYPE=Release -D MACT_SCREENSHOTS=ON -D MACT_CLI=OFF \
  -D MACT_TESTS=OFF >/dev/null
cmake --build build/screenshots --target mact_screenshots

# A screen large enough for every window, even at twice the size.
cd tests/data
export QT_QPA_PLATFORM=offscreen:configfile=screen_1920x1080.json
export QT_LOGGING_RULES=default.warning=false # about what this platform cannot do
mkdir -p "$folder"
for scale in "${scales[@]}"; do
  for look in light dark; do
    QT_SCALE_FACTOR=$scale "$root/build/screenshots/docs/screenshots/mact_screenshots" "$folder" "$look" "${names[@]}"
  done
done
ls "$folder"
