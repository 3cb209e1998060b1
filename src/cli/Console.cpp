#include "cli/Console.h"

#include "Core/Printable.h"
#include "Platform/SystemError.h"
#include "Platform/Terminal.h"
#include "cli/Table.h"

#include <cstdio>
#include <fmt/format.h>
#include <iostream>
#include <string>

namespace vh::cli {

namespace {

constexpr size_t barWidth = 24;
constexpr std::string_view eraseLine = "\r\x1b[K";

} // namespace

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throwErrno("standard output");
}

void flush() {
    if (std::fflush(stdout) != 0)
        throwErrno("standard output");
}

void complain(std::string_view text) {
    std::fprintf(stderr, "varnholt: %.*s\n", int(text.size()), text.data());
}

size_t outputWidth() {
    return isTerminal(StandardStream::output) ? terminalWidth() : 0;
}

bool confirm(std::string_view question, std::string_view yesLetters) {
    flush();
    std::fprintf(stderr, "%.*s ", int(question.size()), question.data());
    std::string answer;
    if (!std::getline(std::cin, answer) || answer.empty())
        return false;
    return yesLetters.find(answer.front()) != std::string_view::npos;
}

std::string progressBar(double fraction) {
    const auto full = static_cast<size_t>(std::clamp(fraction, 0.0, 1.0) * barWidth);
    std::string bar;
    for (size_t i = 0; i < barWidth; ++i)
        bar += i < full ? "█" : "░";
    return fmt::format("{} {:3.0f} %  ", bar, fraction * 100);
}

ProgressLine::ProgressLine() : visible_(isTerminal(StandardStream::error)) {}

ProgressLine::~ProgressLine() {
    if (visible_)
        std::fwrite(eraseLine.data(), 1, eraseLine.size(), stderr);
}

JobControl ProgressLine::control(const CancelToken& cancel) {
    return {cancel, [this](double fraction, std::string_view what) {
                show(fraction, what);
            }};
}

void ProgressLine::show(double fraction, std::string_view what) {
    if (!visible_)
        return;
    std::string line = fraction < 0 ? std::string() : progressBar(fraction);
    const std::string name = printable(what);
    const size_t room = terminalWidth() - std::min(terminalWidth(), displayWidth(line) + 1);
    line += shorten(name, room);
    std::fprintf(stderr, "%s%s", eraseLine.data(), line.c_str());
}

} // namespace vh::cli
