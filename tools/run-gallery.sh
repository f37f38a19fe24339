#!/usr/bin/env bash
# Builds the toolkit and opens the gallery. Without a display it renders every
# page to gallery-screenshots/ instead and says where they are.
#
#   tools/run-gallery.sh [gallery arguments]
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh build
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DORVACAT_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build build -j"$(nproc)" --target orvacat-gallery

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec build/examples/gallery/orvacat-gallery "$@"
fi

out="$PWD/gallery-screenshots"
echo "No display found: rendering every page off screen."
QT_QPA_PLATFORM=offscreen build/examples/gallery/orvacat-gallery --screenshot "$out" "$@"
echo "Open the pictures in $out to see the gallery."
