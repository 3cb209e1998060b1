#include "Tools/FastCopy/command/CopyBars.h"

#include "Core/ByteFormat.h"
#include "Core/Printable.h"
#include "Platform/Terminal.h"
#include "cli/Console.h"
#include "cli/Table.h"

#include <cstdio>
#include <fmt/format.h>

namespace vh::cli {

using copy::CopyPhase;
using copy::CopyProgress;

namespace {

/// Where the terminal is narrow, the figure alone.
std::string barOf(int64_t done, int64_t total) {
    constexpr size_t narrow = 48;
    const double share = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 1.0;
    return terminalWidth() < narrow ? fmt::format("{:3.0f} %  ", share * 100) : progressBar(share);
}

} // namespace

CopyBars::CopyBars(const std::vector<std::string>& destinations, const Texts& texts)
    : visible_(isTerminal(StandardStream::error)), destinations_(destinations), texts_(texts) {}

CopyBars::~CopyBars() {
    draw({});
}

void CopyBars::show(const CopyProgress& progress) {
    draw(linesOf(progress));
}

std::vector<std::string> CopyBars::linesOf(const CopyProgress& progress) const {
    std::vector<std::string> lines;
    if (progress.phase == CopyPhase::copying)
        for (size_t i = 0; i < progress.destinationBytes.size(); ++i)
            lines.push_back(barOf(progress.destinationBytes[i], progress.bytesPerDestination) +
                            printable(destinations_[i]));
    else
        lines.push_back(barOf(progress.bytesDone, progress.bytesTotal) + texts_.text("cli.copy.verifying"));
    std::string last = rateText(progress.bytesPerSecond, texts_.language());
    if (progress.secondsRemaining)
        last += "  " + texts_.text("cli.copy.left",
                                   {{"time", durationText(*progress.secondsRemaining, texts_.language())}});
    lines.push_back(last + "  " + printable(progress.currentFile));
    return lines;
}

void CopyBars::draw(const std::vector<std::string>& lines) {
    if (!visible_)
        return;
    std::string out = "\r";
    for (size_t i = 1; i < drawn_; ++i)
        out += "\x1b[A";
    out += "\x1b[J"; // all below goes
    for (size_t i = 0; i < lines.size(); ++i)
        out += (i == 0 ? "" : "\n") + shorten(lines[i], terminalWidth() - 1);
    std::fwrite(out.data(), 1, out.size(), stderr);
    drawn_ = lines.size();
}

} // namespace vh::cli
