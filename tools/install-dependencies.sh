#!/usr/bin/env bash
# Installs the Debian 12 packages that building, testing and running the
# toolkit need, when they are missing: for both Qt 5.15 and Qt 6, which the
# toolkit builds against alike. As root it runs apt-get; otherwise it prints
# the command to run and fails.
#
#   tools/install-dependencies.sh [build|test|all]
set -euo pipefail

what=${1:-all}

packages=(cmake g++ make pkg-config ccache fonts-dejavu-core
    qtbase5-dev qtbase5-dev-tools libqt5network5
    qt6-base-dev qt6-base-dev-tools)
if [ "$what" = test ] || [ "$what" = all ]; then
    # xvfb/xauth/x11-utils: the window close-button tests run under a virtual
    # X server; openssl makes the help tests' certificate; Google Benchmark
    # for bench/; doxygen writes the API reference, which CI checks;
    # qttools5-dev and qt6-tools-dev bring the Designer headers the plugin is
    # built with; qt6-5compat-dev the QRegExp that the style-sheet tests
    # compare with under Qt 6.
    # dbus-daemon, dbus-bin and at-spi2-core give the accessibility runs a
    # session bus with the AT-SPI bus on it.
    packages+=(xvfb xauth x11-utils openssl libbenchmark-dev doxygen qttools5-dev qt6-tools-dev qt6-5compat-dev
        dbus-daemon dbus-bin at-spi2-core)
fi

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages: ${missing[*]}" >&2
    echo "Install them with:" >&2
    echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
    exit 1
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
