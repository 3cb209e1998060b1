// A library to preload: whatever a program writes takes as long as a place of SLOW_WRITES mebibytes a second would,
// without using the processor. It stands in for places that are really slow and apart from each other.
#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/types.h>
#include <thread>

namespace {

template <class Call>
Call next(const char* name) {
    return reinterpret_cast<Call>(::dlsym(RTLD_NEXT, name));
}

ssize_t delayed(ssize_t written) {
    static const char* const rate = std::getenv("SLOW_WRITES");
    static const double bytesPerSecond = (rate ? std::atof(rate) : 100) * 1024 * 1024;
    if (written > 0)
        std::this_thread::sleep_for(
            std::chrono::duration<double>(static_cast<double>(written) / bytesPerSecond));
    return written;
}

} // namespace

extern "C" {

ssize_t write(int file, const void* bytes, size_t count) {
    static const auto call = next<ssize_t (*)(int, const void*, size_t)>("write");
    return delayed(call(file, bytes, count));
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
    static const auto call = next<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
    return delayed(call(file, bytes, count, offset));
}

ssize_t pwrite64(int file, const void* bytes, size_t count, off_t offset) {
    return pwrite(file, bytes, count, offset);
}

ssize_t copy_file_range(int from, off_t* at, int to, off_t* where, size_t count, unsigned flags) {
    static const auto call = next<ssize_t (*)(int, off_t*, int, off_t*, size_t, unsigned)>("copy_file_range");
    return delayed(call(from, at, to, where, count, flags));
}
}
