// device_image_bench DEVICE IMAGE: images a disk and prints the seconds it took and the hash.
#include "HelperKit/DeviceImage.h"

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("device_image_bench DEVICE IMAGE\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    vh::helper::DeviceImage image({vh::helper::DeviceJobKind::image, argv[1], argv[2]}, 0);
    image.make({});
    const auto status = image.status();
    if (!status.error.empty()) {
        std::fprintf(stderr, "%s\n", status.error.c_str());
        return 1;
    }
    std::printf("%.3f %s\n", std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
                status.sha256.c_str());
}
