#!/bin/sh
# Breaks the library in each of the ways of tools/mutations.txt, one after the other, in a copy of the tree, and
# tells which of them no test notices. Takes a few seconds for each.
#
#   tools/mutation-check.sh [FIRST]      begins with the place of that number, default 1
set -eu
first=${1:-1}
cd "$(dirname "$0")/.."
. tools/setup.sh

# shellcheck disable=SC2086
install_packages $BUILD_PACKAGES git
copy=build/mutation/tree
mkdir -p "$copy"
git ls-files -z --cached --others --exclude-standard | tar --null -T - -c | tar -x -C "$copy"
# What an interrupted check has built of a broken file is not to be kept.
sed -n 's/^\(Orvel[^ ]*\) .*/\1/p' tools/mutations.txt | sort -u | (cd "$copy" && xargs touch)

# The tests of the library's own parts.
tests='^tst_(covmessage|lifecycle|datafile|datafiledom|datafilecodec|utf8decoder|selection|protocoltypes|intake|linkscanner|page|htmloutput|tree|links|itempage|creportdelegate|exceptioncatcher|orvelguiextension|orvelprocessmonitor|orvelsupport|urinavigation|limits)$'
out=$copy/build/release
# The tests need not be linked again when only what is inside the library changes.
(cd "$copy" && cmake --preset release -DCMAKE_LINK_DEPENDS_NO_SHARED=ON >/dev/null)
targets=$(ctest --test-dir "$out" --tests-regex "$tests" -N | sed -n 's/.*: \(tst_.*\)/\1/p')

check() {
    # shellcheck disable=SC2086
    cmake --build "$out" --target $targets >build/mutation/build.log 2>&1 &&
        ctest --test-dir "$out" --tests-regex "$tests" --timeout 120 --stop-on-failure -j 2 \
            >build/mutation/test.log 2>&1
}
if ! check; then
    echo "The tests fail already, see build/mutation/*.log" >&2
    exit 1
fi

number=0
survivors=0
while IFS= read -r line; do
    case $line in '#'* | '') continue ;; esac
    number=$((number + 1))
    [ "$number" -ge "$first" ] || continue
    file=${line%% *}
    if ! MUTATION=$line perl -0777 -e '
            my ($file, $old, $new) = map { s/\\n/\n/g; s/\\\|/|/g; $_ }
                $ENV{MUTATION} =~ /^(\S+) \| (.*?) \| ?(.*)$/ or exit 2;
            open(my $in, "<", $ARGV[0]) or exit 2;
            my $text = <$in>;
            my $at = index($text, $old);
            exit 3 if $at < 0;
            substr($text, $at, length($old)) = $new;
            open(my $out, ">", $ARGV[0]) or exit 2;
            print $out $text;' "$copy/$file"; then
        echo "$number: nothing to break: $line" >&2
        exit 1
    fi
    if check; then
        survivors=$((survivors + 1))
        echo "$number: NOT NOTICED: $line"
    elif grep -q 'error:' build/mutation/build.log; then
        echo "$number: noticed by the compiler: ${line%% |*}"
    else
        echo "$number: noticed by $(sed -n 's/^.* Test *#[0-9]*: \(tst_[a-z0-9]*\).*\(Failed\|Timeout\|Exception\|\*\*\*\).*/\1/p' build/mutation/test.log | head -n 1): ${line%% |*}"
    fi
    cp -p "$file" "$copy/$file"
    touch "$copy/$file"
done <tools/mutations.txt
echo "$((number - first + 1)) places broken, $survivors not noticed"
[ "$survivors" -eq 0 ]
