#pragma once

#include "Core/Texts.h"
#include "Tools/FastCopy/CopyReport.h"

namespace vh::copy::test {

/// What went wrong, in English.
inline std::vector<std::string> inEnglish(const Messages& problems) {
    return linesOf(problems, Texts(Language::en));
}
inline std::vector<std::string> problemsOf(const CopyReport& report) {
    return inEnglish(report.problems());
}

} // namespace vh::copy::test
