#!/usr/bin/env bash
# copy.sh [BIN] [FOLDER] [MEBIBYTES] [FILES] [RUNS]: `varnholt copy` as a whole process against `cp`, `cp -a` and
# `sha256sum`, in turn, below FOLDER (a disk: /var/tmp; in memory: /dev/shm): one file of MEBIBYTES (4096) to one and to
# three places, FILES (100,000) files of 4 KiB to one and to three, and both with verification to three. Cold, with
# nothing of the source in memory and everything flushed within the time, where the folder lies on a disk and this may
# drop caches; then warm. In memory also the file to three places that write 100 MiB a second each, as separate slow
# disks do (a preloaded library waits at each write, for ours and theirs alike). Prints the medians of RUNS (3) and what of the source was read; fails when a ratio is above
# what is allowed.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
top=$(mktemp -d -p "${2:-/var/tmp}")
size=${3:-4096}
files=${4:-100000}
runs=${5:-3}
trap 'rm -rf "$top"' EXIT
export HOME="$top/home" XDG_DATA_HOME="$top/home/data" XDG_STATE_HOME="$top/home/state"
mkdir -p "$HOME" "$top/large" "$top/small"

head -c "${size}M" /dev/urandom >"$top/large/file"
head -c 4096 /dev/urandom >"$top/block"
for folder in $(seq $((files / 1000))); do
    mkdir "$top/small/folder $folder"
    (cd "$top/small/folder $folder" && seq 1000 | xargs touch && for file in *; do cat "$top/block" >"$file"; done)
done

on_disk=1
[ "$(stat -f -c %T "$top")" != tmpfs ] || on_disk=0
warm() { cat "$top/large/file" >/dev/null && find "$top/small" -type f -exec cat {} + >/dev/null; }
fresh() { # STATE: empty places, and the source as it is to be
    rm -rf "$top"/to
    mkdir -p "$top"/to/{1,2,3}
    [ "$on_disk" = 0 ] || sync
    [ "$1" = warm ] || echo 3 >/proc/sys/vm/drop_caches
}
timed() { # STATE COMMAND…: its microseconds; a cold one ends when the disk has all
    fresh "$1"
    local start=$EPOCHREALTIME end
    "${@:2}" >/dev/null
    [ "$1" = warm ] || sync
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./}))
}
places() { # HOW MANY
    seq "$1" | while read -r each; do echo "$top/to/$each"; done
}
theirs() { # COUNT VERIFY SOURCE CP…
    local each count=$1 verify=$2 source=$3
    for each in $(places "$count"); do "${@:4}" "$source" "$each/"; done
    [ "$verify" = no ] || find "$source" "$top/to" -type f -print0 | xargs -0 sha256sum
}
ours() { # COUNT VERIFY SOURCE
    local to=()
    readarray -t to < <(places "$1")
    "$bin/varnholt" copy "$3" --to "${to[@]}" $([ "$2" = no ] || echo --verify)
}
failed=0
compare() { # STATE NAME ALLOWED COUNT VERIFY SOURCE CP…
    local state=$1 name=$2 allowed=$3
    shift 3
    for _ in $(seq "$runs"); do
        echo "theirs $(timed "$state" theirs "$@")"
        echo "ours $(timed "$state" ours "$1" "$2" "$3")"
    done | sort -k1,1 -k2,2n | awk -v name="$state $name" -v allowed="$allowed" '
        { values[$1, ++count[$1]] = $2 }
        END {
            theirs = values["theirs", int((count["theirs"] + 1) / 2)]; ours = values["ours", int((count["ours"] + 1) / 2)]
            printf "%s: %.2f s, theirs %.2f s, ratio %.2f of %s\n", name, ours / 1e6, theirs / 1e6, ours / theirs, allowed
            exit ours > allowed * theirs
        }' || failed=1
}
states=warm
[ "$on_disk" = 0 ] || [ ! -w /proc/sys/vm/drop_caches ] || states="cold warm"
for state in $states; do
    [ "$state" = cold ] || warm
    compare $state "one file to 1" 1.05 1 no "$top/large/file" cp
    compare $state "one file to 3" 0.6 3 no "$top/large/file" cp
    compare $state "one file to 3, verified" 0.6 3 yes "$top/large/file" cp
    compare $state "$files files to 1" 1.1 1 no "$top/small" cp -a
    compare $state "$files files to 3" 0.8 3 no "$top/small" cp -a
    compare $state "$files files to 3, verified" 0.6 3 yes "$top/small" cp -a
done
slow() { # a state of its own: as warm, with slow writes
    export SLOW_WRITES=100
    theirs() { for each in $(places "$1"); do LD_PRELOAD=$bin/libslow_writes.so cp "$3" "$each/"; done; }
    ours() {
        local to=()
        readarray -t to < <(places "$1")
        LD_PRELOAD=$bin/libslow_writes.so "$bin/varnholt" copy "$3" --to "${to[@]}"
    }
    compare warm "one file to 3 slow places" 0.36 3 no "$top/large/file"
}
[ "$on_disk" = 1 ] || slow
exit $failed
