#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace vh {

/// A failed system call. what() reads "<path>: <reason>", the reason in the system's own words.
class SystemError : public std::runtime_error {
public:
    SystemError(int code, std::string path);
    /// For a refusal of our own that has no errno: code() is 0.
    SystemError(std::string path, std::string_view reason);

    int code() const { return code_; }
    const std::string& path() const { return path_; }
    const std::string& reason() const { return reason_; }

private:
    int code_;
    std::string path_;
    std::string reason_;
};

/// Throws the SystemError of the present errno.
[[noreturn]] void throwErrno(const std::string& path);

} // namespace vh
