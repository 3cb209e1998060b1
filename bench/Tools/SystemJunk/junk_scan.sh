#!/usr/bin/env bash
# junk_scan.sh [BIN]: scans 200,000 files in 2,000 folders, each folder an item, against `du -s` on the same tree,
# both warm and in turn. Prints the medians of 15 runs each; fails when the scan is the slower one.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
[ -x "$bin/junk_scan_bench" ] || { echo "$bin/junk_scan_bench is not built" >&2; exit 1; }
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

(cd "$tree" && seq -f '%.0f' 2000 | xargs mkdir)
head -c 700 /dev/zero >"$tree/1/0"
(cd "$tree/1" && split -b 7 -a 2 -d 0 && rm 0) # a hundred files
for folder in $(seq 2 2000); do
    cp -r "$tree/1/." "$tree/$folder"
done

runs=15
for run in $(seq 0 $runs); do
    start=$EPOCHREALTIME
    du -s "$tree" >/dev/null
    end=$EPOCHREALTIME
    [ "$run" = 0 ] || echo "du $((${end/./} - ${start/./}))" # the first run warms
    echo "scan $("$bin/junk_scan_bench" "$tree")"
done | awk '$1 == "du" { print $1, $2 } $1 == "scan" && NR > 1 { print $1, $4; items = $2; bytes = $3 }
    END { print "what", items " items, " bytes " bytes" }' | sort -k1,1 -k2,2n | awk '
    { values[$1, ++count[$1]] = $2 }
    $1 == "what" { sub(/^what /, ""); what = $0 }
    END {
        du = values["du", int((count["du"] + 1) / 2)]; scan = values["scan", int((count["scan"] + 1) / 2)]
        printf "%s: scan %.1f ms, du %.1f ms, ratio %.2f\n", what, scan / 1000, du / 1000, scan / du
        exit scan > du
    }'
