#!/bin/sh
# Reads sources with clang-tidy, as .clang-tidy asks for. Nothing has to be built for that.
#
#   tools/tidy.sh                    all sources: an hour and a half of processor time
#   tools/tidy.sh REGEX...           those whose paths match one of these, such as levelling/
#   tools/tidy.sh --files FILE...    these; a header is read with a source that includes it
#   tools/tidy.sh --changed          those of the last commit, and what is not committed yet
#
# With --files and --changed no reading begins more than TIDY_SECONDS after the first one, 600 unless told.
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

# sources_of FILE...: the sources to read for these files, one a line.
sources_of() {
    for file in "$@"; do
        case $file in
        *.cpp) echo "$file" ;;
        *.h)
            if [ -f "${file%.h}.cpp" ]; then
                echo "${file%.h}.cpp"
            else
                grep -rlF --include='*.cpp' --exclude-dir=build "#include \"$file\"" . | sed 's#^\./##' | head -n 1
            fi
            ;;
        esac
    done | sort -u
}

# changed_files: those of the last commit that are still there, and what is not committed yet.
changed_files() {
    {
        # The first commit, and the only one of a shallow history, have none before them.
        git diff --name-only --diff-filter=d HEAD^ HEAD 2>/dev/null || true
        git diff --name-only --diff-filter=d HEAD
        git ls-files --others --exclude-standard
    } | sort -u
}

# read_all: reads the sources that stand in the standard input, one a line; fails where there is a finding.
read_all() {
    deadline=$(($(date +%s) + ${TIDY_SECONDS:-600}))
    # Sources that are not built here, for want of a library, have no entry.
    # shellcheck disable=SC2016
    xargs -r -n 1 -P "$(nproc)" sh -c '
        grep -qF "\"$3/$4\"" "$2/compile_commands.json" || exit 0
        if [ "$(date +%s)" -ge "$1" ]; then
            echo "$4: not read, the time is over"
            exit 0
        fi
        findings=$(clang-tidy -quiet -p "$2" "$4" 2>&1) || { echo "$findings"; exit 1; }
        echo "$4: read"
    ' sh "$deadline" build/tidy "$PWD"
}

if [ "${1:-}" = --changed ]; then
    if ! git rev-parse --quiet --verify HEAD >/dev/null 2>&1; then
        echo "No git history here: no changed files to read with clang-tidy."
        exit 0
    fi
    # shellcheck disable=SC2046
    set -- --files $(changed_files)
fi
if [ "${1:-}" = --files ]; then
    shift
    sources=$(sources_of "$@")
    if [ -z "$sources" ]; then
        echo "No C++ sources changed: nothing to read with clang-tidy."
        exit 0
    fi
fi

mkdir -p build
# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES clang clang-tidy libclang-rt-dev libpugixml-dev
cmake --preset tidy >build/tidy.log || { cat build/tidy.log; exit 1; }
# What moc makes is all that has to be made; a build of it would make the libraries first.
# shellcheck disable=SC2016
find build/tidy -name AutogenInfo.json -print0 |
    xargs -0 -n 1 -P "$(nproc)" sh -c 'cmake -E cmake_autogen "$1" RelWithDebInfo' sh
if [ -n "${sources:-}" ]; then
    echo "$sources" | read_all
    exit
fi
if [ "$#" -eq 0 ]; then
    set -- "^$PWD/(Orvel|host|formats|levelling|tacheometry|apps|template|bench|tests)/"
fi
run-clang-tidy -quiet -p build/tidy "$@"
