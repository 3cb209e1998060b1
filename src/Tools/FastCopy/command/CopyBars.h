#pragma once

#include "Core/Texts.h"
#include "Tools/FastCopy/CopyProgress.h"

#include <string>
#include <vector>

namespace vh::cli {

/// A live bar for each destination of a copy, and below them what is at work, rate and time left: on standard error
/// while it is a terminal, gone when the object goes; otherwise nothing. One thread.
class CopyBars {
public:
    CopyBars(const std::vector<std::string>& destinations, const Texts& texts);
    ~CopyBars();
    CopyBars(const CopyBars&) = delete;
    CopyBars& operator=(const CopyBars&) = delete;

    void show(const copy::CopyProgress& progress);

private:
    std::vector<std::string> linesOf(const copy::CopyProgress& progress) const;
    void draw(const std::vector<std::string>& lines);

    const bool visible_;
    const std::vector<std::string>& destinations_;
    const Texts& texts_;
    size_t drawn_ = 0; ///< lines on the screen
};

} // namespace vh::cli
