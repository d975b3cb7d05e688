#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks the Debian package that `make deb` built: lintian finds no error in
# it; its desktop entries, metainfo, file types and manual pages validate; and
# the programs unpacked from it start, through the links in usr/bin, to the
# chapter window with their example chapters found (the end-to-end test, run
# against them as well as against the build).
#
# usage: scripts/check-package.sh PACKAGE.deb DEBUG_BUILD_DIR
set -uo pipefail

if [[ $# -ne 2 || ! -f "$1" || ! -d "$2" ]]; then
    echo "usage: $0 PACKAGE.deb DEBUG_BUILD_DIR" >&2
    exit 2
fi
deb=$(realpath "$1")
debug=$(realpath "$2")
here=$(cd "$(dirname "$0")/.." && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
dpkg-deb -x "$deb" "$root" || { echo "check-package: cannot unpack $deb" >&2; exit 1; }
share=$root/usr/share

passed=0
failed=0
# Runs one check; its output is shown only when it fails.
check() {
    local name=$1 out
    shift
    if out=$("$@" 2>&1); then
        echo "  ok    $name"
        passed=$((passed + 1))
    else
        echo "  FAIL  $name"
        [[ -n "$out" ]] && sed 's/^/        /' <<<"$out"
        failed=$((failed + 1))
    fi
}

# Fails with what was said when a command says anything at all (validators
# that exit 0 on warnings).
silent() {
    local out
    out=$("$@" 2>&1) || { echo "$out"; return 1; }
    [[ -z "$out" ]] || { echo "$out"; return 1; }
}

contents() {
    local missing=0 f
    for f in usr/lib/vocabrix/vocabrix usr/lib/vocabrix/vxedit \
             usr/lib/vocabrix/ex1.zel usr/lib/vocabrix/ex2.zel usr/lib/vocabrix/ex3.zel \
             usr/lib/vocabrix/ex4.zel usr/lib/vocabrix/ex5.zel usr/lib/vocabrix/doc/index.html \
             usr/share/applications/vocabrix.desktop usr/share/applications/vxedit.desktop \
             usr/share/metainfo/org.example.vocabrix.metainfo.xml \
             usr/share/mime/packages/vocabrix.xml \
             usr/share/icons/hicolor/scalable/apps/vocabrix.svg \
             usr/share/icons/hicolor/scalable/mimetypes/application-x-vocabrix-chapter.svg \
             usr/share/icons/hicolor/scalable/mimetypes/application-x-vocabrix-progress.svg \
             usr/share/man/man1/vocabrix.1.gz usr/share/man/man1/vxedit.1.gz \
             usr/share/doc/vocabrix/copyright usr/share/doc/vocabrix/changelog.gz; do
        [[ -f "$root/$f" ]] || { echo "missing: /$f"; missing=1; }
    done
    for p in vocabrix vxedit; do
        [[ "$(readlink "$root/usr/bin/$p")" == "../lib/vocabrix/$p" ]] \
            || { echo "/usr/bin/$p is not a link to ../lib/vocabrix/$p"; missing=1; }
    done
    # Every picture the manual shows comes with it.
    for f in $(grep -o 'src="screenshots/[^"]*"' "$here/doc/index.html" | sed 's/^src="//; s/"$//'); do
        [[ -f "$root/usr/lib/vocabrix/doc/$f" ]] || { echo "missing: /usr/lib/vocabrix/doc/$f"; missing=1; }
    done
    return $missing
}

# The libraries come from the binaries; the platform plugins are added.
dependencies() {
    local depends
    depends=$(dpkg-deb -f "$deb" Depends)
    echo "Depends: $depends"
    for d in libqt6core6 libqt6gui6 libqt6widgets6 libc6 qt6-qpa-plugins; do
        grep -q "\b$d\b" <<<"$depends" || return 1
    done
    [[ "$(dpkg-deb -f "$deb" Section)" == education ]]
}

# Everything lintian says is shown after the check; only errors fail.
lintian_errors() {
    lintian --tag-display-limit 0 --display-info "$deb" 2>&1 \
        | grep -v '^running with root privileges' >"$work/lintian.txt"
    ! grep -q '^E:' "$work/lintian.txt"
}

metainfo() {
    silent_appstream appstreamcli validate --no-net --pedantic \
        "$share/metainfo/org.example.vocabrix.metainfo.xml" || return 1
    # The installed tree: the metainfo with the desktop entries it names.
    silent_appstream appstreamcli validate-tree --no-net --pedantic "$root" || return 1
    # Every screenshot it names is one of those kept in packaging/screenshots.
    local url missing=0
    for url in $(grep -o '<image>[^<]*</image>' "$share/metainfo/org.example.vocabrix.metainfo.xml" \
                 | sed 's/<[^>]*>//g'); do
        [[ -f "$here/packaging/screenshots/$(basename "$url")" ]] \
            || { echo "no packaging/screenshots/$(basename "$url") for $url"; missing=1; }
    done
    return $missing
}

# appstreamcli ends with a line of praise when all is well; anything else
# it says (a warning, a hint, an info) fails.
silent_appstream() {
    local out
    out=$("$@" 2>&1) || { echo "$out"; return 1; }
    if grep -v -e '^✔ Validation was successful\.$' -e '^$' <<<"$out" | grep -q .; then
        echo "$out"
        return 1
    fi
}

manual_pages() {
    local page out status=0
    for page in "$share"/man/man1/*.1.gz; do
        # As lintian reads them: any word from groff is a fault.
        out=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 \
              man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
        [[ -z "$out" ]] || { echo "$page: $out"; status=1; }
        out=$(LC_ALL=C.UTF-8 MANWIDTH=80 man -l "$page" 2>&1)
        grep -q '^NAME' <<<"$out" && grep -q "Vocabrix $(dpkg-deb -f "$deb" Version)" <<<"$out" \
            || { echo "$page: no NAME section or not this version"; status=1; }
    done
    return $status
}

file_types() {
    local mime=$work/mime
    xmllint --noout "$share/mime/packages/vocabrix.xml" || return 1
    mkdir -p "$mime/mime/packages" "$work/samples" "$work/nohome"
    cp "$share/mime/packages/vocabrix.xml" "$mime/mime/packages/"
    XDG_DATA_DIRS=$mime silent update-mime-database "$mime/mime" || return 1
    # As the system's triggers do on installing: the cache of which entry
    # opens which type.
    cp -r "$share/applications" "$mime/"
    silent update-desktop-database "$mime/applications" || return 1
    # A chapter known by its content alone, a progress file by its name.
    cp "$root/usr/lib/vocabrix/ex1.zel" "$work/samples/chapter"
    printf 'progress' >"$work/samples/saved.vxs"
    type_of() {
        XDG_DATA_HOME=$work/nohome XDG_DATA_DIRS=$mime gio info -a standard::content-type "$1" \
            | sed -n 's/^ *standard::content-type: //p'
    }
    [[ "$(type_of "$work/samples/chapter")" == application/x-vocabrix-chapter ]] \
        || { echo "a chapter is not known by its content"; return 1; }
    [[ "$(type_of "$work/samples/saved.vxs")" == application/x-vocabrix-progress ]] \
        || { echo "a .vxs file is not a progress file"; return 1; }
    # Chapters open in the editor (an entry counts once its program is found).
    local handlers
    handlers=$(PATH=$root/usr/bin:$PATH XDG_DATA_HOME=$work/nohome XDG_CONFIG_HOME=$work/nohome \
               XDG_DATA_DIRS=$mime gio mime application/x-vocabrix-chapter)
    grep -q '^Default application for .*: vxedit.desktop$' <<<"$handlers" \
        || { echo "chapters do not open with vxedit.desktop: $handlers"; return 1; }
    # Progress files open in Vocabrix, which resumes them.
    handlers=$(PATH=$root/usr/bin:$PATH XDG_DATA_HOME=$work/nohome XDG_CONFIG_HOME=$work/nohome \
               XDG_DATA_DIRS=$mime gio mime application/x-vocabrix-progress)
    grep -q '^Default application for .*: vocabrix.desktop$' <<<"$handlers" \
        || { echo "progress files do not open with vocabrix.desktop: $handlers"; return 1; }
}

echo "check-package: $(basename "$deb") ($(du -k "$deb" | cut -f1) KiB)"
check "contents and links" contents
check "dependencies and section" dependencies
check "lintian: no errors" lintian_errors
sed 's/^/        /' "$work/lintian.txt"
check "desktop entries" silent desktop-file-validate "$share/applications/vocabrix.desktop" \
    "$share/applications/vxedit.desktop"
check "AppStream metainfo" metainfo
check "manual pages" manual_pages
check "file types" file_types
# The end-to-end test, also against the unpacked programs (it lists its rows).
check "unpacked programs start and find their chapters" \
    env VOCABRIX_PACKAGE_ROOT="$root" ctest --test-dir "$debug" -R '^e2e$' --output-on-failure

echo "check-package: $passed passed, $failed failed"
[[ $failed -eq 0 ]]
