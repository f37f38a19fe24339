#!/usr/bin/env bash
# Builds the toolkit and runs every test, against each Qt major installed:
# Qt 5.15 in the build folder, Qt 6 in the same folder with "-qt6" appended.
# The suites that depend on the screen are registered with ctest once per
# screen setting (DPI factor 1.0, DPI factor 4/3, device-pixel ratio 2); the
# others run once, at factor 4/3. When both majors are built, the Qt 6
# build's install test also installs both into one prefix.
#
#   tools/run-tests.sh [build folder] [extra cmake arguments...]
#
# ORVACAT_QT_MAJORS picks the majors, e.g. ORVACAT_QT_MAJORS=6 for Qt 6 only
# (default: "5 6", each one that is installed). ORVACAT_CTEST_ARGS adds
# arguments to ctest, for example -E '@(72|dpr2)$' to run only the
# factor-4/3 registrations.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build}
shift || true

tools/install-dependencies.sh test

majors=()
for major in ${ORVACAT_QT_MAJORS:-5 6}; do
    case $major in
        5) minimum="Qt5Core >= 5.15" ;;
        6) minimum="Qt6Core >= 6.2" ;;
        *) echo "ORVACAT_QT_MAJORS: $major is not a Qt major (5 or 6)" >&2; exit 2 ;;
    esac
    if pkg-config --exists "$minimum"; then
        majors+=("$major")
    else
        echo "Qt $major is not installed: not tested."
    fi
done
if [ ${#majors[@]} -eq 0 ]; then
    echo "No Qt to build against." >&2
    exit 1
fi

summary=()
status=0
previous=""
for major in "${majors[@]}"; do
    folder=$build
    [ "$major" = 5 ] || folder=$build-qt$major
    # The side-by-side install check, against the major built just before.
    other=""
    [ -z "$previous" ] || other=$(cd "$previous" && pwd)
    echo "=== Qt $major in $folder"
    cmake -S . -B "$folder" -DBUILD_TESTING=ON -DORVACAT_QT_MAJOR="$major" \
        -DORVACAT_OTHER_MAJOR_BUILD="$other" "$@" >/dev/null
    cmake --build "$folder" -j"$(nproc)"
    log=$(mktemp)
    # shellcheck disable=SC2086
    if ctest --test-dir "$folder" --output-on-failure -j"$(nproc)" --timeout 600 ${ORVACAT_CTEST_ARGS:-} | tee "$log"; then
        result="passed"
    else
        result="FAILED"
        status=1
    fi
    version=$(pkg-config --modversion "Qt${major}Core" 2>/dev/null || echo "$major")
    summary+=("Qt $version ($folder): $(grep -E 'tests passed' "$log" | tail -n1) -> $result")
    rm -f "$log"
    previous=$folder
done

echo
echo "=== Tested"
for line in "${summary[@]}"; do
    echo "$line"
done
exit $status
