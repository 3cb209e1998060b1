// Scans one folder as junk, once, and prints how many items it found, their bytes and the microseconds it took.

#include "Tools/SystemJunk/JunkScanner.h"

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: junk_scan_bench <folder>\n");
        return 2;
    }
    const auto configuration = vh::junk::SystemJunkConfiguration::fixture(argv[1]);
    const auto start = std::chrono::steady_clock::now();
    const vh::ScanReport report = vh::junk::JunkScanner(configuration).scan("system-junk", {});
    const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
    std::printf("%zu %lld %.0f\n", report.items.size(), static_cast<long long>(report.totalBytes()),
                taken.count());
    return 0;
}
