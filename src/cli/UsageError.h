#pragma once

#include <stdexcept>

namespace vh::cli {

/// Words that a command cannot do anything with: what() says which, and what is expected.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace vh::cli
