#include "Platform/SystemError.h"

#include <cerrno>
#include <system_error>

namespace vh {

namespace {

std::string describe(const std::string& path, std::string_view reason) {
    return path.empty() ? std::string(reason) : path + ": " + std::string(reason);
}

} // namespace

SystemError::SystemError(int code, std::string path)
    : std::runtime_error(describe(path, std::generic_category().message(code))), code_(code),
      path_(std::move(path)), reason_(std::generic_category().message(code)) {}

SystemError::SystemError(std::string path, std::string_view reason)
    : std::runtime_error(describe(path, reason)), code_(0), path_(std::move(path)), reason_(reason) {}

void throwErrno(const std::string& path) {
    throw SystemError(errno, path);
}

} // namespace vh
