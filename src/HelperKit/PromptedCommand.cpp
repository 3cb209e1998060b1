#include "HelperKit/PromptedCommand.h"

#include "Core/Fold.h"
#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"

#include <algorithm>

namespace vh::helper {

namespace {

/// Longer than any prompt.
constexpr size_t mostRemembered = 4096;

/// What was said since the last answer, and which answer comes next.
class State {
public:
    explicit State(const std::vector<PromptedCommand::Answer>& answers) : answers_(answers) {}

    /// What to type after another piece of output; mostly nothing.
    std::string reply(std::string_view piece) {
        if (next_ == answers_.size())
            return {};
        const PromptedCommand::Answer& answer = answers_[next_];
        asked_ += piece;
        if (foldCase(asked_).find(foldCase(answer.prompt)) == std::string::npos) {
            asked_.erase(0, asked_.size() - std::min(asked_.size(), mostRemembered));
            return {};
        }
        asked_.clear();
        ++next_;
        return answer.text + '\n';
    }

private:
    const std::vector<PromptedCommand::Answer>& answers_;
    std::string asked_;
    size_t next_ = 0;
};

/// A terminal takes control characters for keys: a line feed would answer the next prompt too.
bool canBeTyped(const PromptedCommand::Answer& answer) {
    return std::ranges::none_of(answer.text, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

} // namespace

PromptedCommand::Result PromptedCommand::run(const Step& step, std::chrono::milliseconds timeout,
                                             const CancelToken& cancel) {
    if (!std::ranges::all_of(step.answers, canBeTyped))
        return {-1, "An answer holds control characters, which cannot be typed."};
    State state(step.answers);
    const MaintenanceRunner::Execution done =
        MaintenanceRunner::execute({step.executable, step.arguments}, timeout, cancel,
                                   [&](std::string_view piece) { return state.reply(piece); });
    return {done.timedOut ? -1 : done.status, done.output};
}

} // namespace vh::helper
