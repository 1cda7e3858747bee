#!/bin/sh
# Runs the fuzz targets with coverage guidance, one after the other, in rounds, until each has made the given
# number of executions. Stopping it loses nothing: the inputs that reach something new, and the count of
# executions, stay in build/fuzz/corpus, and the next start goes on from there. A finding ends the run with its
# input in build/fuzz/findings.
#
#   tools/fuzz-long.sh [EXECUTIONS [TARGET...]]      default: 10000000 of each target
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

wanted=${1:-10000000}
[ $# -eq 0 ] || shift
targets=${*:-"links gkf datafile project uri journal"}
seconds_per_turn=300

# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES clang llvm libclang-rt-14-dev
build_preset fuzz fuzz-targets

QT_QPA_PLATFORM=offscreen
LC_ALL=C.UTF-8
LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM LC_ALL LSAN_OPTIONS
# What the targets write must not wait for a disk.
[ ! -d /dev/shm ] || export TMPDIR="${TMPDIR:-/dev/shm}"
mkdir -p build/fuzz/findings

# fuzz TARGET: one turn of a target, and its executions added to its count.
fuzz() {
    corpus=build/fuzz/corpus/$1
    counter=build/fuzz/corpus/$1.executions
    log=build/fuzz/corpus/$1.log
    mkdir -p "$corpus"
    done=$(cat "$counter" 2>/dev/null || echo 0)
    [ "$done" -lt "$wanted" ] || return 0
    # shellcheck disable=SC2046
    if ! "build/fuzz/fuzz/fuzz_$1" $(cat "build/fuzz/fuzz/fuzz_$1.options") \
            -runs=$((wanted - done)) -max_total_time=$seconds_per_turn -print_final_stats=1 \
            -artifact_prefix=build/fuzz/findings/"$1"- "$corpus" "tests/fuzz/seeds/$1" >"$log" 2>&1; then
        echo "$1: a finding, see $log" >&2
        exit 1
    fi
    new=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    done=$((done + new))
    echo "$done" >"$counter"
    echo "$1: $done executions, $(find "$corpus" -type f | wc -l) inputs kept"
    [ "$done" -ge "$wanted" ] || remaining=1
}

remaining=1
while [ "$remaining" -eq 1 ]; do
    remaining=0
    for target in $targets; do
        fuzz "$target"
    done
done
