#!/usr/bin/env bash
# device_image.sh [BIN] [MEBIBYTES] [FOLDER]: images a loop device, hashing it meanwhile, against `dd bs=4M` of the
# same device and against dd followed by sha256sum; in turn, everything flushed, five runs. Needs root. Prints the
# medians.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
size=${2:-1024}
folder=$(mktemp -d -p "${3:-/var/tmp}")
device=
trap '[ -z "$device" ] || losetup -d "$device"; rm -rf "$folder"' EXIT

head -c "${size}M" /dev/urandom >"$folder/disk"
device=$(losetup --find --show "$folder/disk")

timed() {
    rm -f "$folder/image"
    sync
    echo 3 >/proc/sys/vm/drop_caches
    local start=$EPOCHREALTIME
    "${@:2}" >/dev/null 2>&1
    local end=$EPOCHREALTIME
    echo "$1 $((${end/./} - ${start/./}))"
}
dd_alone() { dd if="$device" of="$folder/image" bs=4M conv=fsync; }
dd_and_hash() { dd_alone && sha256sum "$folder/image"; }

for _ in 1 2 3 4 5; do
    timed image "$bin/device_image_bench" "$device" "$folder/image"
    cmp -s "$folder/disk" "$folder/image" || { echo "the image is not the disk" >&2; exit 1; }
    timed dd dd_alone
    timed dd+sha256sum dd_and_hash
done | sort -k1,1 -k2,2n | awk -v size="$size" '
    { values[$1, ++count[$1]] = $2 }
    END {
        for (what in count) {
            median[what] = values[what, int((count[what] + 1) / 2)]
            printf "%-14s %6.0f MiB/s\n", what, size / (median[what] / 1e6)
        }
        printf "speed of image to dd %.2f, to dd+sha256sum %.2f\n", median["dd"] / median["image"],
            median["dd+sha256sum"] / median["image"]
    }'
