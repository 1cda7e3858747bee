#!/bin/sh
# Writes the files that tests compare pages, data files and journals with anew, from what the programs write now.
# What has changed is then to be read: git diff tests
#
#   tools/update-expected.sh
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES
[ -f build/release/build.ninja ] || cmake --preset release
cmake --build --preset release --target tst_headless tst_journalrecorder tst_picture tst_replay tst_reports
ORVEL_UPDATE_EXPECTED=1 ctest --preset release --tests-regex '^tst_(headless|journalrecorder|picture|replay|reports)$'
git status --short tests
