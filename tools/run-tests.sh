#!/usr/bin/env bash
# Builds the toolkit and runs every test. The suites that depend on the screen
# are registered with ctest once per screen setting (DPI factor 1.0, DPI
# factor 4/3, device-pixel ratio 2); the others run once, at factor 4/3.
#
#   tools/run-tests.sh [build folder] [extra cmake arguments...]
#
# ORVACAT_CTEST_ARGS adds arguments to ctest, for example -E '@(72|dpr2)$'
# to run only the factor-4/3 registrations.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build}
shift || true

tools/install-dependencies.sh test
cmake -S . -B "$build" -DBUILD_TESTING=ON "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"

# shellcheck disable=SC2086
ctest --test-dir "$build" --output-on-failure -j"$(nproc)" --timeout 600 ${ORVACAT_CTEST_ARGS:-}
