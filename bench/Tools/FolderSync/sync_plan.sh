#!/usr/bin/env bash
# sync_plan.sh [BIN] [FOLDER] [FILES] [CHANGES]: `varnholt sync` as a whole process against rsync, in turn, below
# FOLDER (a disk: /var/tmp; in memory: /dev/shm): the plan of two equal trees of FILES files (200,000) against
# `rsync -rtn --delete`, then CHANGES changes (20,000: four tenths new, four changed, two gone) against
# `rsync -a --delete`. Cold, with nothing of either tree in memory and what is written flushed within the time, where the folder lies
# on a disk and this may drop caches; then warm. Prints the medians of 5 and of 3 runs and the memory an entry takes;
# fails when a plan takes more than 0.6 of rsync, the changes more than 0.9, or an entry 400 bytes.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
files=${3:-200000}
changes=${4:-20000}
for program in varnholt timed_run; do
    [ -x "$bin/$program" ] || { echo "$bin/$program is not built" >&2; exit 1; }
done
command -v rsync >/dev/null || { echo "rsync is needed" >&2; exit 1; }
top=$(mktemp -d -p "${2:-${TMPDIR:-/var/tmp}}")
trap 'rm -rf "$top"' EXIT
export HOME="$top/home" XDG_DATA_HOME="$top/home/data" XDG_STATE_HOME="$top/home/state" XDG_RUNTIME_DIR="$top/home"
mkdir "$HOME"

folders=$((files / 100))
mkdir "$top/source" "$top/nothing" "$top/none"
(cd "$top/source" && seq -f 'folder %.0f' "$folders" | tr '\n' '\0' | xargs -0 mkdir)
head -c 700 /dev/zero >"$top/pieces"
(cd "$top/source/folder 1" && split -b 7 -a 2 -d "$top/pieces" "some file ")
for folder in $(seq 2 "$folders"); do
    cp -r "$top/source/folder 1/." "$top/source/folder $folder"
done
cp -a "$top/source" "$top/old"

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

on_disk=1
[ "$(stat -f -c %T "$top")" != tmpfs ] || on_disk=0
states=warm
[ "$on_disk" = 0 ] || [ ! -w /proc/sys/vm/drop_caches ] || states="cold warm"
prepare() { # STATE
    [ "$on_disk" = 0 ] || sync
    [ "$1" = warm ] || echo 3 >/proc/sys/vm/drop_caches
}
timed() { # STATE COMMAND…: its microseconds and its memory; a cold one that writes ends when the disk has all
    local start=$EPOCHREALTIME end memory
    read -r _ memory < <("$bin/timed_run" "${@:2}") || { echo "failed: ${*:2}" >&2; exit 1; }
    [ "$1" = warm ] || sync
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./})) "$memory"
}
empty=$(timed warm "$bin/varnholt" sync plan --delete --source "$top/nothing" --destination "$top/none" | cut -d' ' -f2)
failed=0
compare() { # NAME ALLOWED: medians of the lines "rsync N M" and "ours N M" of the input
    sort -k1,1 -k2,2n | awk -v name="$1" -v allowed="$2" -v empty="$empty" -v entries=$((2 * files)) '
        { values[$1, ++count[$1]] = $2 }
        $1 == "ours" && $3 > memory { memory = $3 }
        END {
            rsync = values["rsync", int((count["rsync"] + 1) / 2)]; ours = values["ours", int((count["ours"] + 1) / 2)]
            each = (memory - empty) / entries
            printf "%s: %.0f ms, rsync %.0f ms, ratio %.2f; %.0f bytes an entry\n", name, ours / 1000, rsync / 1000, ours / rsync, each
            exit ours > allowed * rsync || each > 400
        }' || failed=1
}

for state in $states; do
    for run in 0 1 2 3 4 5; do
        prepare "$state"
        rsync=$(timed warm rsync -rtn --delete "$top/source/" "$top/old/")
        prepare "$state"
        ours=$(timed warm "$bin/varnholt" sync plan --delete --source "$top/source" --destination "$top/old")
        [ "$run" = 0 ] || printf 'rsync %s\nours %s\n' "$rsync" "$ours" # the first run warms
    done | compare "$state plan of $files files" 0.6
    for run in 1 2 3; do
        rm -rf "$top/theirs" "$top/mine" "$XDG_DATA_HOME/Trash"
        cp -a "$top/old" "$top/theirs"
        cp -a "$top/old" "$top/mine"
        prepare "$state"
        echo "rsync $(timed "$state" rsync -a --delete "$top/new/" "$top/theirs/")"
        prepare "$state"
        echo "ours $(timed "$state" "$bin/varnholt" sync apply --yes --delete --source "$top/new" --destination "$top/mine")"
        [ "$run" = 1 ] || [ -z "$(rsync -an --delete -i "$top/new/" "$top/mine/" | grep -v '^\.d' | head -1)" ] ||
            { echo "the trees differ" >&2; exit 1; }
    done | compare "$state $changes changes" 0.9
done
exit $failed
