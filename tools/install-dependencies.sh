#!/usr/bin/env bash
# Installs the Debian 12 packages that building, testing and running the
# toolkit need, when they are missing. As root it runs apt-get; otherwise it
# prints the command to run and fails.
#
#   tools/install-dependencies.sh [build|test|all]
set -euo pipefail

what=${1:-all}

packages=(cmake g++ make pkg-config ccache qtbase5-dev qtbase5-dev-tools libqt5network5 fonts-dejavu-core)
if [ "$what" = test ] || [ "$what" = all ]; then
    # xvfb/xauth/x11-utils: the window close-button tests run under a virtual
    # X server; openssl makes the help tests' certificate; Google Benchmark
    # for bench/; doxygen writes the API reference, which CI checks;
    # qttools5-dev brings the Designer headers the plugin is built with.
    packages+=(xvfb xauth x11-utils openssl libbenchmark-dev doxygen qttools5-dev)
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
