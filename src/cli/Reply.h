#pragma once

#include "Core/Codec.h"
#include "Core/RunRecord.h"
#include "cli/Console.h"
#include "cli/Exit.h"

namespace vh::cli {

/// One JSON document on standard output.
template <class T>
void printJson(const T& value) {
    print(encodeJson(value, JsonStyle::pretty) + '\n');
}

constexpr Exit exitOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::success:
        return Exit::done;
    case Outcome::warning:
        return Exit::warnings;
    case Outcome::cancelled:
        return Exit::cancelled;
    case Outcome::failed:
        break;
    }
    return Exit::failed;
}

} // namespace vh::cli
