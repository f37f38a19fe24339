#!/usr/bin/env bash
# Builds the toolkit and opens the gallery. Without a display it renders every
# page to gallery-screenshots/ instead and says where they are.
#
#   tools/run-gallery.sh [gallery arguments]
#
# It runs on the newest Qt installed (Qt 6, else Qt 5.15), built in the same
# folder as tools/run-tests.sh uses for that major (build-qt6, or build);
# ORVACAT_QT_MAJOR=5 or 6 picks one.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh build

major=${ORVACAT_QT_MAJOR:-}
if [ -z "$major" ]; then
    major=5
    if pkg-config --exists "Qt6Core >= 6.2"; then
        major=6
    fi
fi
case $major in
    5) folder=build; gallery=orvacat-gallery ;;
    6) folder=build-qt6; gallery=orvacat-gallery-qt6 ;;
    *) echo "ORVACAT_QT_MAJOR: $major is not a Qt major (5 or 6)" >&2; exit 2 ;;
esac

echo "Building the gallery on Qt $(pkg-config --modversion "Qt${major}Core") in $folder"
cmake -S . -B "$folder" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DORVACAT_BUILD_BENCHMARKS=OFF \
    -DORVACAT_QT_MAJOR="$major" >/dev/null
cmake --build "$folder" -j"$(nproc)" --target orvacat-gallery

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$folder/examples/gallery/$gallery" "$@"
fi

out="$PWD/gallery-screenshots"
echo "No display found: rendering every page off screen."
QT_QPA_PLATFORM=offscreen "$folder/examples/gallery/$gallery" --screenshot "$out" "$@"
echo "Open the pictures in $out to see the gallery."
