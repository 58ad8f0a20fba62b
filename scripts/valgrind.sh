#!/usr/bin/env bash
# The unit tests, and hpgldump over the golden plots, the examples and FILE..., each under valgrind. Prints what it
# finds, errors and leaks, and at the end the number of runs and of those that were bad; takes a quarter of an hour.
# usage: scripts/valgrind.sh [FILE...]
set -uo pipefail
. "$(dirname "$0")/setup.sh"

runs=0
bad=0
found=$(mktemp -d)
trap 'rm -rf "$found"' EXIT

# check COMMAND...: one run; each process in it writes a file of its own.
check() {
    runs=$((runs + 1))
    rm -f "$found"/*
    nice valgrind --quiet --leak-check=full --error-exitcode=99 --log-file="$found/%p" "$@" \
        >"$found/output" 2>&1 && return
    bad=$((bad + 1))
    echo "bad: $*"
    tail -n 40 "$found/output"
    cat "$found"/[0-9]*
}

# shellcheck disable=SC2086
install_packages $packages_to_build $packages_to_test valgrind libc6-dbg || exit 1
build valgrind || exit 1

folder=$root/build/valgrind
for program in "$folder"/tests/unit/unit_*; do
    # Starting a program that is not there fails in the child, which valgrind does not report to its parent.
    [ -x "$program" ] && [ -f "$program" ] && check "$program" --gtest_filter=-ViewerProcess.SaysThatItIsNotThere
done
for plot in "$root"/tests/golden/*/*.plt "$root"/examples/*.plt "$@"; do
    check "$folder/tools/hpgldump" --hex --picture --calls --records "$plot"
done
echo "$runs runs, $bad bad"
[ "$bad" -eq 0 ]
