#pragma once

#include <string>
#include <vector>

namespace vh {

/// The words of a program that is to be killed when the thread that started it ends, however that comes; the words as
/// they are where the system cannot do that.
std::vector<std::string> endingWithParent(std::vector<std::string> arguments);

} // namespace vh
