#!/usr/bin/env bash
# Builds the toolkit and runs every test on the offscreen platform at three
# screen settings: DPI factor 1.0, DPI factor 4/3 and device-pixel ratio 2.
#
#   tools/run-tests.sh [build folder] [extra cmake arguments...]
#
# ORVACAT_TEST_SETTINGS="QT_FONT_DPI=96" runs only the settings it lists.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build}
shift || true

tools/install-dependencies.sh test
cmake -S . -B "$build" -DBUILD_TESTING=ON "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"

export QT_QPA_PLATFORM=offscreen
status=0
for setting in ${ORVACAT_TEST_SETTINGS:-QT_FONT_DPI=72 QT_FONT_DPI=96 QT_SCALE_FACTOR=2}; do
    echo "=== tests at $setting"
    if ! env "$setting" ctest --test-dir "$build" --output-on-failure -j2 --timeout 600; then
        status=1
    fi
done
exit $status
