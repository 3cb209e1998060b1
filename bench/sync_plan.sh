#!/usr/bin/env bash
# bench/sync_plan.sh [BIN] [FILES] [CHANGES]: two equal trees of FILES files (200,000) against `rsync -rtn --delete`, then
# CHANGES changes (20,000: four tenths new, four changed, two gone) against `rsync -a --delete`, both warm and in turn.
# Prints the medians of 7 and of 3 runs; fails when the plan takes more than 0.6 of rsync or the changes more than 0.9.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
files=${2:-200000}
changes=${3:-20000}
[ -x "$bin/sync_bench" ] || { echo "$bin/sync_bench is not built" >&2; exit 1; }
command -v rsync >/dev/null || { echo "rsync is needed" >&2; exit 1; }
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
export XDG_DATA_HOME="$top/data" # for the Trash

folders=$((files / 100))
mkdir "$top/source"
(cd "$top/source" && seq -f 'folder %.0f' "$folders" | tr '\n' '\0' | xargs -0 mkdir)
head -c 700 /dev/zero >"$top/pieces"
(cd "$top/source/folder 1" && split -b 7 -a 2 -d "$top/pieces" "some file ")
for folder in $(seq 2 "$folders"); do
    cp -r "$top/source/folder 1/." "$top/source/folder $folder"
done
cp -a "$top/source" "$top/old"

taken() { # the microseconds of a command
    local start=$EPOCHREALTIME end
    "$@" >/dev/null
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./}))
}
compare() { # NAME ALLOWED: medians of the lines "rsync N" and "ours N" of the input
    sort -k1,1 -k2,2n | awk -v name="$1" -v allowed="$2" '
        { values[$1, ++count[$1]] = $2 }
        END {
            rsync = values["rsync", int((count["rsync"] + 1) / 2)]; ours = values["ours", int((count["ours"] + 1) / 2)]
            printf "%s: %.0f ms, rsync %.0f ms, ratio %.2f\n", name, ours / 1000, rsync / 1000, ours / rsync
            exit ours > allowed * rsync
        }'
}

failed=0
for run in $(seq 0 7); do
    rsync=$(taken rsync -rtn --delete "$top/source/" "$top/old/")
    read -r ours actions _ bytes <<<"$("$bin/sync_bench" plan "$top/source" "$top/old")"
    [ "$actions" = 0 ] || { echo "equal trees gave $actions actions" >&2; exit 1; }
    [ "$run" = 0 ] || printf 'rsync %s\nours %s\n' "$rsync" "$ours" # the first run warms
    [ "$run" != 7 ] || echo "$bytes bytes of memory an entry" >&2
done | compare "plan of $files files" 0.6 || failed=1

step=$((files / changes))
cp -a "$top/source" "$top/new"
(cd "$top/new" && find . -type f | sort | awk -v step="$step" '
    NR % step == 0 { n++; print (n % 5 < 2 ? "add" : n % 5 < 4 ? "change" : "remove") "\t" $0 }' |
    while IFS=$'\t' read -r what file; do
        case $what in
        add) echo "something new" >"$file new" ;;
        change) echo "more" >>"$file" ;;
        remove) rm "$file" ;;
        esac
    done)
for run in 1 2 3; do
    rm -rf "$top/theirs" "$top/mine" "$top/data"
    cp -a "$top/old" "$top/theirs"
    cp -a "$top/old" "$top/mine"
    sync
    echo "rsync $(taken rsync -a --delete "$top/new/" "$top/theirs/")"
    read -r ours actions errors _ <<<"$("$bin/sync_bench" apply "$top/new" "$top/mine")"
    [ "$errors" = 0 ] || { echo "$errors errors" >&2; exit 1; }
    [ "$run" = 1 ] || [ -z "$(rsync -an --delete -i "$top/new/" "$top/mine/" | grep -v '^\.d' | head -1)" ] ||
        { echo "the trees differ" >&2; exit 1; }
    echo "ours $ours"
done | compare "$changes changes" 0.9 || failed=1
exit $failed
