#include "Core/RunUndo.h"

#include "Core/ErrorMessage.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/ToolTexts.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Platform/Trash.h"

#include <algorithm>
#include <stdexcept>

namespace vh {

namespace {

bool wasTrashed(const RunFileRow& row) {
    return cleanState::isTrashed(row.state) && row.place;
}

RunRecord recordOf(const RunLog& log, const Uuid& runID, const Texts& texts) {
    const std::vector<RunRecord> all = log.all();
    const auto found = std::ranges::find(all, runID, &RunRecord::id);
    if (found == all.end())
        throw std::runtime_error(texts.text("undo.unknown-run"));
    return *found;
}

class Undo {
public:
    Undo(std::vector<RunFileRow>& rows, const Texts& texts, const JobControl& control, RunJournal& journal)
        : rows_(rows), texts_(texts), control_(control), journal_(journal) {}

    void restoreAll() {
        for (RunFileRow& row : rows_) {
            if (control_.cancel.isCancelled())
                return;
            if (wasTrashed(row))
                restore(row);
            else if (row.state == cleanState::deleted)
                skip(row, texts_.text("undo.reason.deleted"));
        }
    }

    bool hasRestored() const { return done_.restoredCount > 0; }

    UndoResult finish(const std::optional<Message>& savingFailure) {
        done_.record =
            journal_.finish(outcome(savingFailure.has_value()), RunWords(message(savingFailure), texts_),
                            {{RunMetric::itemsProcessed, static_cast<double>(done_.restoredCount)},
                             {RunMetric::errors, static_cast<double>(done_.skipped.size())}},
                            {{RunDetail::files, std::to_string(done_.restoredCount)},
                             {RunDetail::bytes, std::to_string(done_.restoredBytes)},
                             {RunDetail::failed, std::to_string(done_.skipped.size())}});
        return std::move(done_);
    }

private:
    void restore(RunFileRow& row) {
        const bool isTaken = statusOf(row.path).has_value();
        if (!isInTrash(*row.place, row.path))
            return skip(row, texts_.text(isTaken ? "undo.reason.back" : "undo.reason.not-in-trash"));
        if (isTaken)
            return skip(row, texts_.text("undo.reason.something-there"));
        journal_.doing({row.path, row.place, row.bytes, cleanState::restored, {}});
        try {
            restoreFromTrash(*row.place, row.path);
            row.state = cleanState::restored;
            ++done_.restoredCount;
            done_.restoredBytes += row.bytes.value_or(0);
        } catch (const SystemError& error) {
            skip(row, worded(reasonOf(error), texts_));
        }
        const bool isRestored = row.state == cleanState::restored;
        journal_.done({row.path, isRestored ? std::nullopt : row.place, row.bytes, row.state, {}});
    }

    void skip(const RunFileRow& row, std::string reason) {
        done_.skipped.push_back({row.path, std::move(reason)});
    }

    Outcome outcome(bool savingFailed) const {
        if (control_.cancel.isCancelled())
            return Outcome::cancelled;
        if (done_.restoredCount == 0 && !done_.skipped.empty())
            return Outcome::failed;
        return done_.skipped.empty() && !savingFailed ? Outcome::success : Outcome::warning;
    }

    Messages message(const std::optional<Message>& savingFailure) const {
        Messages message{
            {"undo.result", {{"count", done_.restoredCount}, {"bytes", ByteCount{done_.restoredBytes}}}}};
        if (!done_.skipped.empty())
            message.push_back({"undo.skipped", {{"count", done_.skipped.size()}}});
        if (control_.cancel.isCancelled())
            message.push_back({"clean.stopped", {}});
        if (savingFailure)
            message.push_back(*savingFailure);
        return message;
    }

    std::vector<RunFileRow>& rows_;
    const Texts& texts_;
    const JobControl& control_;
    RunJournal& journal_;
    UndoResult done_;
};

/// The Trash itself keeps anything from being put back twice, so a list that could not be written only reads old.
std::optional<Message> save(const RunFiles& files, const Uuid& run, const std::vector<RunFileRow>& rows) {
    try {
        files.save(run, rows);
        return std::nullopt;
    } catch (const SystemError& error) {
        return messageOf(error);
    }
}

} // namespace

bool canUndo(std::span<const RunFileRow> rows) {
    return std::ranges::any_of(
        rows, [](const RunFileRow& row) { return wasTrashed(row) && isInTrash(*row.place, row.path); });
}

UndoResult undoRun(const Uuid& runID, Trigger trigger, const RunStores& stores, const Texts& texts,
                   const JobControl& control) {
    const RunRecord undone = recordOf(stores.log, runID, texts);
    std::vector<RunFileRow> rows = stores.files.rows(runID);
    const auto run = stores.log.begin(undone.toolID, trigger);
    const auto journal = stores.journals.open(run, toolName(texts, undone.toolID));
    Undo undo(rows, texts, control, *journal);
    undo.restoreAll();
    // A list of which nothing came back stays as it is: it may be one that could not be read.
    return undo.finish(undo.hasRestored() ? save(stores.files, runID, rows) : std::nullopt);
}

} // namespace vh
