#!/usr/bin/env bash
# startup.sh [BIN]: time from start to end of commands that only look, against `rsync --version` in the same run.
# Prints the median of 40 runs each and the ratio. A log of 20,000 runs stands in the sandbox home.
set -euo pipefail
command -v rsync >/dev/null || { echo "startup.sh: rsync is not installed, and there is nothing to compare with" >&2; exit 1; }
bin=$(realpath "${1:-build/release/bin}")
export HOME
HOME=$(mktemp -d)
trap 'rm -rf "$HOME"' EXIT
unset XDG_DATA_HOME XDG_CONFIG_HOME

mkdir -p "$HOME/.local/share/Varnholt"
awk 'BEGIN {
    for (i = 1; i <= 20000; i++)
        printf "{\"computer\":\"atelier\",\"details\":{\"bytes\":\"123456\",\"failed\":\"0\",\"files\":\"31\"}," \
            "\"duration\":1.25,\"id\":\"0B5F6A0E-7C1E-4B0B-9F0C-%012d\"," \
            "\"metrics\":{\"errors\":0,\"filesRemoved\":31,\"freedBytes\":123456789},\"outcome\":\"success\"," \
            "\"startedAt\":\"2026-11-22T20:18:55Z\",\"summary\":\"31 items moved to the Trash, 123.5 MB.\"," \
            "\"toolID\":\"system-junk\",\"trigger\":\"manual\"}\n", i
}' >"$HOME/.local/share/Varnholt/runs.jsonl"

median() { # words
    local i
    for i in $(seq 40); do
        local start=$EPOCHREALTIME
        "$@" >/dev/null
        local end=$EPOCHREALTIME
        echo $((${end/./} - ${start/./}))
    done | sort -n | sed -n 20p
}

peer=$(median rsync --version)
printf '%-28s %8s us\n' 'rsync --version' "$peer"
for words in 'tools' 'runs list' 'runs list --text trash'; do
    # shellcheck disable=SC2086 # the words are words
    own=$(median "$bin/varnholt" $words)
    awk -v name="varnholt $words" -v own="$own" -v peer="$peer" 'BEGIN { printf "%-28s %8d us  %.2f of rsync --version\n", name, own, own / peer }'
done
