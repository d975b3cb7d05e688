#!/usr/bin/env bash
# Makes the metainfo's screenshots (packaging/screenshots) from the pictures
# the tests took of the real windows: the end-to-end test's chapter and study
# windows, and the editor's test's window. Colours are reduced with pngquant
# so that each stays a few dozen KB.
#
# usage: scripts/update-screenshots.sh SCREENS_DIR OUTPUT_DIR
set -euo pipefail

if [[ $# -ne 2 ]]; then
    echo "usage: $0 SCREENS_DIR OUTPUT_DIR" >&2
    exit 2
fi
from=$1
to=$2

declare -A taken=(
    [study-window.png]=build-study-window.png
    [chapter-window.png]=build-chapter-window.png
    [editor.png]=editor.png
)
mkdir -p "$to"
for name in "${!taken[@]}"; do
    source=$from/${taken[$name]}
    if [[ ! -f "$source" ]]; then
        echo "update-screenshots: no $source; run \`make test\` first" >&2
        exit 1
    fi
    pngquant --force --strip --speed 1 --quality 60-90 --output "$to/$name" "$source"
    echo "update-screenshots: $to/$name ($(du -k "$to/$name" | cut -f1) KiB)"
done
