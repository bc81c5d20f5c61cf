#!/usr/bin/env bash
# Instructions for one document, for the rows whose times scatter with the caches of the machine: the difference between a run
# with twice the documents and one with once as many, divided by their number. Needs valgrind.
# Usage: instructions.sh PROGRAM, the program being decodedtextbench.
set -eu
program=$1
export QT_QPA_PLATFORM=offscreen
count=4000

instructions() { # SIDE COUNT
    valgrind --tool=callgrind --callgrind-out-file=/dev/null "$program" --work "$1" "$2" 2>&1 |
        sed -nE 's/.*Collected : ([0-9]+).*/\1/p'
}

per_document() { # SIDE
    echo $((($(instructions "$1" $((2 * count))) - $(instructions "$1" $count)) / count))
}

making=$(per_document documents) # both sides make their documents first; that is taken off

ratio() { # ROW OURS BASELINE
    local ours baseline
    ours=$(($(per_document "$2") - making))
    baseline=$(($(per_document "$3") - making))
    awk -v row="$1" -v a="$ours" -v b="$baseline" -v x="$2" -v y="$3" \
        'BEGIN { printf "| %s | %d (%s) | %d (%s) | %.2f |\n", row, a, x, b, y, a / b }'
}

ratio 8 many-channels few-channels
ratio 9b merged plain
