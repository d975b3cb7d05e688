#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the published screenshots from the pictures the tests took of the
# real windows: the metainfo's three (packaging/screenshots) and, with a third
# folder, the manual's picture of every window (doc/screenshots). Colours are
# reduced with pngquant so that each stays a few dozen KB.
#
# usage: scripts/update-screenshots.sh SCREENS_DIR PACKAGING_DIR [MANUAL_DIR]
set -euo pipefail

if [[ $# -lt 2 || $# -gt 3 ]]; then
    echo "usage: $0 SCREENS_DIR PACKAGING_DIR [MANUAL_DIR]" >&2
    exit 2
fi
from=$1

# published name => the test's picture
declare -A packaging=(
    [study-window.png]=build-study-window.png
    [chapter-window.png]=build-chapter-window.png
    [editor.png]=editor.png
)
declare -A manual=(
    [splash.png]=window-frmSplash.png
    [setup.png]=window-frmSetup.png
    [chapter-window.png]=build-chapter-window.png
    [chapter-window-session.png]=chapter-window-session.png
    [study-window.png]=build-study-window.png
    [typed-wrong.png]=typed-wrong.png
    [progress.png]=progress.png
    [find-text.png]=window-frmFind-1.png
    [find-go-to-card.png]=window-frmFind-2.png
    [viewer.png]=viewer.png
    [options-colors.png]=window-frmOptions-1.png
    [options-interface.png]=window-frmOptions-2.png
    [options-study.png]=window-frmOptions-3.png
    [options-speech.png]=window-frmOptions-4.png
    [about.png]=window-frmAbout.png
    [print-sheet.png]=print-sheet.png
    [print-fold.png]=print-fold.png
    [editor.png]=editor.png
    [editor-import.png]=editor-import-list.txt.png
    [editor-find.png]=editor-FindReplaceDialog.png
    [editor-languages.png]=editor-LanguagesDialog.png
)

# publish TARGET_DIR NAME=PICTURE...
publish() {
    local to=$1 pair name source
    shift
    mkdir -p "$to"
    for pair in "$@"; do
        name=${pair%%=*}
        source=$from/${pair#*=}
        if [[ ! -f "$source" ]]; then
            echo "update-screenshots: no $source; run \`make test\` first" >&2
            exit 1
        fi
        pngquant --force --strip --speed 1 --quality 60-90 --output "$to/$name" "$source"
        echo "update-screenshots: $to/$name ($(du -k "$to/$name" | cut -f1) KiB)"
    done
}

pairs=()
for name in "${!packaging[@]}"; do pairs+=("$name=${packaging[$name]}"); done
publish "$2" "${pairs[@]}"
if [[ $# -eq 3 ]]; then
    pairs=()
    for name in "${!manual[@]}"; do pairs+=("$name=${manual[$name]}"); done
    publish "$3" "${pairs[@]}"
fi
