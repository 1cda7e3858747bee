#!/bin/sh
# Runs the fuzz targets with coverage guidance, one after the other, in rounds, until each has made the given
# number of executions, and tells how many each made. Stopping it loses nothing: the inputs that reach something
# new, and the count of executions, stay in build/fuzz/corpus, and the next start goes on from there. A finding
# ends the run with its input in build/fuzz/findings.
#
#   tools/fuzz-long.sh [EXECUTIONS [TARGET...]]      default: 10000000 of each target
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

wanted=${1:-10000000}
[ $# -eq 0 ] || shift
targets=${*:-"links gkf template gsi m5 tacheometry datafile project uri journal"}
seconds_per_turn=300

# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES clang llvm libclang-rt-dev
build_preset fuzz fuzz-targets

QT_QPA_PLATFORM=offscreen
LC_ALL=C.UTF-8
LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
# To note where each block of memory came from takes a fifth of the time; a finding, run with its input alone, still
# tells it. With fewer than two callers leaks are not told. Less memory kept back after its release leaves more of
# the processor's caches to the rest.
ASAN_OPTIONS=malloc_context_size=2:quarantine_size_mb=8
export QT_QPA_PLATFORM LC_ALL LSAN_OPTIONS ASAN_OPTIONS
# What the targets write must not wait for a disk.
[ ! -d /dev/shm ] || export TMPDIR="${TMPDIR:-/dev/shm}"
mkdir -p build/fuzz/findings

# The exit codes of the fuzzer.
timed_out=70
interrupted=72

# run TARGET ARGUMENT...: the target with its options. Leaks are looked for when it ends: a look after every input
# that keeps memory costs a hundred times the input. Takes the place of the shell that it runs in.
run() {
    target=$1
    shift
    # shellcheck disable=SC2046
    exec "build/fuzz/fuzz/fuzz_$target" $(cat "build/fuzz/fuzz/fuzz_$target.options") -detect_leaks=0 \
        -report_slow_units=25 -artifact_prefix=build/fuzz/findings/"$target"- "$@"
}

# stood_still TARGET LOG: whether the input that took too long is done in time when it is tried again; then the
# machine, or the fuzzer, had been stopped meanwhile.
stood_still() {
    input=$(sed -n 's/.*Test unit written to //p' "$2" | tail -n 1)
    [ -f "$input" ] && (run "$1" "$input") >"$2.again" 2>&1 && rm "$input" "$2.again"
}

# executions TARGET: how many it has made.
executions() {
    cat "build/fuzz/corpus/$1.executions" 2>/dev/null || echo 0
}

# fuzz TARGET: one turn of a target, and its executions added to its count.
fuzz() {
    corpus=build/fuzz/corpus/$1
    log=$corpus.log
    mkdir -p "$corpus"
    done=$(executions "$1")
    [ "$done" -lt "$wanted" ] || return 0
    status=0
    # In the background, so that a signal to this script is seen at once.
    run "$1" -runs=$((wanted - done)) -max_total_time=$seconds_per_turn -print_final_stats=1 \
        "$corpus" "tests/fuzz/seeds/$1" >"$log" 2>&1 &
    fuzzer=$!
    wait "$fuzzer" || status=$?
    if [ -n "$stopping" ]; then
        status=$interrupted
        wait "$fuzzer" || true
    fi
    new=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    done=$((done + ${new:-0}))
    echo "$done" >"$corpus.executions"
    echo "$1: $done executions, $(find "$corpus" -type f | wc -l) inputs kept"
    [ "$status" -ne "$interrupted" ] || exit 1
    if [ "$status" -ne 0 ] && ! { [ "$status" -eq "$timed_out" ] && stood_still "$1" "$log"; }; then
        echo "$1: a finding, see $log" >&2
        exit 1
    fi
    [ "$done" -ge "$wanted" ] || remaining=1
}

fuzzer=
stopping=
trap 'stopping=1; [ -z "$fuzzer" ] || kill -TERM "$fuzzer" 2>/dev/null || true' INT TERM
remaining=1
while [ "$remaining" -eq 1 ]; do
    remaining=0
    for target in $targets; do
        fuzz "$target"
    done
done
for target in $targets; do
    echo "$target: $(executions "$target") executions without a finding"
done
