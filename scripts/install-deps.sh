#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Brings what a fresh Debian 12 (or Ubuntu) machine lacks to build, run and test
# Vocabrix (and, with --package, to build and check its Debian package).
# Packages already present are skipped; nothing is installed when
# everything is there, so `make run` and `make test` stay quick after the first time.
set -euo pipefail

packages=(
    # compiler and build tools
    g++ make cmake
    # Qt 6 (Core, Gui, Widgets, Network, PrintSupport, Test) with moc and the platform plugins
    qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins libgl-dev
    # speaking the card: Qt TextToSpeech, its speech-dispatcher plugin and espeak-ng's voices;
    # Qt TextToSpeech's CMake files also want QmlIntegration's headers (in qt6-declarative-dev)
    qt6-speech-dev qt6-speech-speechd-plugin speech-dispatcher-espeak-ng espeak-ng-data
    qt6-declarative-dev
    # a real X server for the end-to-end test, a way to drive it, to read its windows'
    # properties, and screenshots
    xvfb xauth xdotool x11-utils x11-apps
    # fonts, so text looks the same on every machine; DejaVu Sans also has the Cyrillic and
    # Greek letters that the card falls back to (and that the tests draw)
    fonts-dejavu-core
    # `make mutate` (scripts/mutate.py)
    python3
    # printed sheets are read back as text and pictures
    poppler-utils
)

case "${1:-}" in
    # `make fuzz` needs clang and its fuzzer runtime as well.
    --fuzz) packages+=(clang libclang-rt-dev) ;;
    # `make deb` and the package check (part of `make test`): the package's
    # dependencies from its binaries, the checkers of what it installs, and
    # pngquant for `make screenshots`.
    --package)
        packages+=(dpkg-dev lintian appstream desktop-file-utils shared-mime-info libglib2.0-bin
                   libxml2-utils man-db groff-base pngquant) ;;
esac

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

if [[ ${#missing[@]} -eq 0 ]]; then
    exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo=()
if [[ $(id -u) -ne 0 ]]; then
    if command -v sudo >/dev/null 2>&1; then
        sudo=(sudo)
    else
        echo "install-deps: need root (or sudo) to install: ${missing[*]}" >&2
        exit 1
    fi
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
