#!/bin/sh
# Collects the texts of the sources into the translations and tells which of them still want one.
#
#   tools/translate.sh
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES
told=$(mktemp)
trap 'rm -f "$told"' EXIT
status=0
lupdate -no-obsolete -locations none -no-ui-lines host Orvel apps -ts translations/orvel_en.ts >"$told" 2>&1 ||
    status=$?
# Of the classes of Qt and of the standard library lupdate knows nothing, and says so in hundreds of lines.
grep -v 'Qualifying with unknown namespace/class' "$told" || true
[ "$status" -eq 0 ] || exit "$status"
awk '/<source>/ { source = $0; gsub(/^ *<source>|<\/source>/, "", source) }
     /type="unfinished"/ { print "To be translated, line " NR ": " source }' translations/orvel_en.ts
