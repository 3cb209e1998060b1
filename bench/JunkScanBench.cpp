// Scans one folder as junk and prints how many items it found, their bytes and the seconds of the fastest run.

#include "Tools/SystemJunk/JunkScanner.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: junk_scan_bench <folder> <runs>\n");
        return 2;
    }
    const auto configuration = vh::junk::SystemJunkConfiguration::fixture(argv[1]);
    double best = std::numeric_limits<double>::max();
    vh::ScanReport report;
    for (int run = 0; run < std::atoi(argv[2]); ++run) {
        const auto start = std::chrono::steady_clock::now();
        report = vh::junk::JunkScanner(configuration).scan("system-junk", {});
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::printf("%zu %lld %.4f\n", report.items.size(), static_cast<long long>(report.totalBytes()), best);
    return 0;
}
