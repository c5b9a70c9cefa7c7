#!/bin/bash
# The Debian packages, taken apart: debian_package.sh BUILD-FOLDER
set -u
. "$(dirname "$0")/../e2e/checks.sh"

if [ $# -ne 1 ]; then
  echo "usage: debian_package.sh BUILD-FOLDER" >&2
  exit 64
fi
BUILD=$(realpath "$1")
SOURCE=$(realpath "$(dirname "$0")/../..")
UNPACKED=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-package.XXXXXX")
trap 'rm -rf "$UNPACKED"' EXIT
LABEL=package

rm -rf "$BUILD/package"
(cd "$BUILD" && cpack -G DEB) >"$UNPACKED/log" 2>&1 || cat "$UNPACKED/log"
PACKAGE=$(find "$BUILD/package" -maxdepth 1 -name 'tallowin_*.deb')
WINDOWS=$(find "$BUILD/package" -maxdepth 1 -name 'tallowin-ui_*.deb')
dpkg-deb --raw-extract "$PACKAGE" "$UNPACKED/tree"

field() {
  dpkg-deb --field "${2:-$PACKAGE}" "$1"
}

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' "$BUILD/CMakeCache.txt")
pass_if "its version is the program's, and the changelog's" "$version-1 $version-1" \
  "$(field Version) $(dpkg-parsechangelog -l "$SOURCE/packaging/debian/changelog" -S Version)"
libraries="libc6 libqt6core6 libqt6gui6 libsystemd0 libxcb1"
pass_if "it depends on what the program and its modules link" "$libraries" \
  "$(field Depends | grep -oE "(^| )(${libraries// /|}) " | tr -d ' ' | sort -u | xargs)"
pass_if "windows are a package of their own, which this one recommends" \
  "libqt6widgets6 tallowin (= $version-1) tallowin-ui (= $version-1)" \
  "$( (field Depends "$WINDOWS"; field Recommends) | grep -oE '(libqt6widgets6|tallowin(-ui)? \(= [0-9.-]*\))' |
    sort -u | xargs)"
pass_if "of just what they need" "./usr/bin/tallowin-ui
./usr/libexec/tallowin/tallowin-ui
./usr/share/man/man1/tallowin-ui.1.gz" \
  "$(dpkg-deb --contents "$WINDOWS" | awk '!/^d/ && !/share\/doc/ { print $6 }' | sort)"
pass_if "it says what it is" 6 \
  "$(dpkg-deb --field "$PACKAGE" | grep -cE '^(Package|Maintainer|Section|Description|Recommends|Installed-Size): .')"
pass_if "what it runs by itself on installing is nothing" "conffiles control md5sums" \
  "$(find "$UNPACKED/tree/DEBIAN" -type f -printf '%f\n' | sort | paste -sd ' ')"

# Who owns what, and its mode, where it is not as usual: root's, folders 755, programs 755, all else 644.
unusual() {
  dpkg-deb --contents "$PACKAGE" | awk '
    $2 != "root/root" { print; next }
    $1 ~ /^l/ { next }
    $1 ~ /^d/ || $6 ~ /\/(bin\/tallowin|tallowin-main)$/ { if ($1 !~ /^.rwxr-xr-x$/) print; next }
    $1 !~ /^-rw-r--r--$/ { print }'
}
pass_if "all of it is root's, with the usual modes" "" "$(unusual)"
pass_if "no file names the place where it was built" "" \
  "$(grep -rlF -e "$SOURCE" -e "$BUILD" "$UNPACKED/tree" | sed "s#$UNPACKED/##")"
pass_if "the program finds its libraries where the system has them, and symbols for debuggers are left out" "" \
  "$(find "$UNPACKED/tree/usr" -type f \( -name 'tallowin*' -o -name '*.so' \) \
    -exec sh -c 'readelf -dS "$1" 2>/dev/null | grep -E "RPATH|RUNPATH|\.debug_info"' - {} \;)"
pass_if "manual pages and changelogs are packed well" 4 \
  "$(find "$UNPACKED/tree/usr/share" -name '*.gz' -exec gzip -t {} \; -print | wc -l)"
pass_if "zsh finds its completions" usr/share/zsh/vendor-completions/_tallowin \
  "$(cd "$UNPACKED/tree" && find usr -name _tallowin)"

echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
