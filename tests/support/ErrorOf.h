#pragma once

#include "Platform/SystemError.h"

#include <string>

namespace vh::test {

/// What the SystemError says that `work` throws; "no error" when it throws none.
template <class Work>
std::string errorOf(Work work) {
    try {
        work();
    } catch (const SystemError& error) {
        return error.what();
    }
    return "no error";
}

} // namespace vh::test
