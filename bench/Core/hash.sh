#!/usr/bin/env bash
# hash.sh [BIN] [MEBIBYTES]: hashes a file in memory (2,048) against `openssl dgst` and `xxhsum`, each
# as a whole process, in turn, nine runs. Prints the medians and how fast ours is against the other; fails when SHA-256 is
# slower than 0.95 of openssl or XXH64 slower than 0.9 of xxhsum.
set -euo pipefail
bin=$(realpath "${1:-build/release/bin}")
size=${2:-2048}
for peer in openssl xxhsum; do
    command -v $peer >/dev/null || { echo "$peer is needed" >&2; exit 1; }
done
top=$(mktemp -d -p /dev/shm)
trap 'rm -rf "$top"' EXIT
export HOME=$top
head -c "${size}M" /dev/urandom >"$top/file"

timed() { # NAME COMMAND…: the name, the microseconds, and what was printed, bare of the file's name
    local start=$EPOCHREALTIME out end
    out=$("${@:2}" 2>/dev/null)
    end=$EPOCHREALTIME
    echo "$1 $((${end/./} - ${start/./})) $(grep -oE '\b[0-9a-f]{16,64}\b' <<<"$out")"
}
for _ in $(seq 9); do
    for kind in sha256 md5; do
        timed $kind-ours "$bin/varnholt" hash --algorithm $kind "$top/file"
        timed $kind-theirs openssl dgst -$kind "$top/file"
    done
    timed xxhash64-ours "$bin/varnholt" hash --algorithm xxhash64 "$top/file"
    timed xxhash64-theirs xxhsum -H64 "$top/file"
done | sort -k1,1 -k2,2n | awk -v size="$size" '
    { values[$1, ++count[$1]] = $2; hash[$1] = $3 }
    END {
        printf "%-10s %12s %12s %8s\n", "", "ours MiB/s", "peer MiB/s", "ratio"
        split("sha256 md5 xxhash64", kinds); allowed["sha256"] = 0.95; allowed["xxhash64"] = 0.9
        for (i = 1; i in kinds; ++i) {
            kind = kinds[i]
            if (hash[kind "-ours"] != hash[kind "-theirs"]) { print kind ": the hashes differ"; failed = 1 }
            ours = values[kind "-ours", 5]; theirs = values[kind "-theirs", 5]
            printf "%-10s %12.0f %12.0f %8.2f\n", kind, size / (ours / 1e6), size / (theirs / 1e6), theirs / ours
            failed = failed || theirs / ours < allowed[kind]
        }
        exit failed
    }'
