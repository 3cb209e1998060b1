#!/usr/bin/env python3
"""Scanning 200,000 files in 2,000 folders, each an item, against du on the same tree, both warm, the fastest of five.

usage: bench/junk_scan.py <build folder>; fails when the scan is the slower one.
"""
import os
import subprocess
import sys
import tempfile
import time

FOLDERS, FILES, RUNS = 2000, 100, 5


def make_tree(tree):
    for folder in range(FOLDERS):
        os.mkdir(f"{tree}/{folder}")
        for name in range(FILES):
            with open(f"{tree}/{folder}/{name}", "wb") as file:
                file.write(b"x" * (name * 7))


def seconds_of_du(tree):
    start = time.monotonic()
    subprocess.run(["du", "-s", tree], check=True, stdout=subprocess.DEVNULL)
    return time.monotonic() - start


with tempfile.TemporaryDirectory() as tree:
    make_tree(tree)
    seconds_of_du(tree)
    theirs = min(seconds_of_du(tree) for _ in range(RUNS))
    line = subprocess.run([f"{sys.argv[1]}/bin/junk_scan_bench", tree, str(RUNS)], check=True, capture_output=True)
    items, size, ours = line.stdout.split()
    print(f"{int(items)} items, {int(size)} bytes: scan {float(ours):.3f} s, du {theirs:.3f} s, "
          f"ratio {float(ours) / theirs:.2f}")
    sys.exit(float(ours) > theirs)
