#include "Core/ByteFormat.h"
#include "Core/Printable.h"
#include "Platform/Terminal.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/command/SyncCommand.h"
#include "Tools/FolderSync/work/SyncJob.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"
#include "app/Session.h"
#include "app/SessionAutomation.h"
#include "cli/Consent.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <algorithm>
#include <chrono>

namespace vh::cli {

namespace {

using namespace sync;
using automation::SyncJobProgress;
using automation::SyncJobResult;

struct RunWords {
    std::string pair;
    FolderWords folders;
};

/// The stored pair, or the two folders, that are meant. Complains when there is none.
std::optional<SyncPair> pairMeant(Context& context, const RunWords& words) {
    const Texts& texts = context.session.texts();
    if (words.pair.empty() == !words.folders.isGiven())
        throw UsageError(texts.text("cli.sync.what"));
    return words.pair.empty() ? words.folders.pair(texts) : findPair(context, words.pair);
}

/// Complains when the folders cannot be compared.
std::optional<SyncPlan> planOf(Context& context, const SyncPair& pair) {
    const Texts& texts = context.session.texts();
    try {
        ProgressLine line;
        line.show(-1, texts.text("folder-sync.comparing", {{"name", pair.title()}}));
        return SyncEngine::plan(pair, context.cancel);
    } catch (const SyncError& error) {
        complain(textOf(error, texts));
        return std::nullopt;
    }
}

const char* wordFor(SyncAction::Kind kind) {
    switch (kind) {
    case SyncAction::Kind::copy:
        return "cli.sync.kind.new";
    case SyncAction::Kind::update:
        return "cli.sync.kind.changed";
    case SyncAction::Kind::remove:
        return "cli.sync.kind.trash";
    case SyncAction::Kind::mkdir:
        break;
    }
    return "cli.sync.kind.folder";
}

/// A line an action; there may be hundreds of thousands.
class ActionLines {
public:
    explicit ActionLines(const Texts& texts) : texts_(texts) {
        for (const SyncAction::Kind kind : allCases<SyncAction::Kind>())
            widest_ = std::max(widest_, displayWidth(texts.text(wordFor(kind))));
    }

    void print(const SyncAction& action) const {
        constexpr size_t sizeWidth = 10;
        const std::string word = texts_.text(wordFor(action.kind));
        const std::string size =
            action.kind == SyncAction::Kind::mkdir ? "" : sizeText(action.bytes, texts_.language());
        cli::print(word + std::string(widest_ - displayWidth(word), ' ') +
                   std::string(sizeWidth - std::min(sizeWidth, displayWidth(size)), ' ') + size + "  " +
                   printable(action.relativePath) + "\n");
    }

private:
    const Texts& texts_;
    size_t widest_ = 0;
};

void printLeftOut(const SyncPlan& plan, const Texts& texts) {
    if (const std::string text = leftOutText(plan.leftOut, texts); !text.empty())
        print(text + "\n");
}

void printTotals(const SyncPlan& plan, const Texts& texts) {
    print(texts.text("cli.sync.totals", {{"copies", plan.copies()},
                                         {"size", sizeText(plan.bytes(), texts.language())},
                                         {"updates", plan.updates()},
                                         {"deletes", plan.deletes()},
                                         {"unchanged", plan.unchanged}}) +
          "\n");
    printLeftOut(plan, texts);
}

void complainOfUnreadable(const SyncPlan& plan, const Texts& texts) {
    for (const Message& each : plan.unreadable)
        complain(worded(each, texts));
}

Exit showPlan(Context& context, const RunWords& words) {
    const auto pair = pairMeant(context, words);
    const auto plan = pair ? planOf(context, *pair) : std::nullopt;
    if (!plan)
        return Exit::failed;
    complainOfUnreadable(*plan, context.session.texts());
    if (context.format == Format::json) {
        printJson(*plan);
    } else {
        const ActionLines lines(context.session.texts());
        for (const SyncAction& each : plan->actions)
            lines.print(each);
        printTotals(*plan, context.session.texts());
    }
    return plan->unreadable.empty() ? Exit::done : Exit::warnings;
}

/// Asks before anything leaves the destination.
std::optional<Exit> unlessAgreed(Context& context, const SyncPlan& plan) {
    constexpr size_t mostShown = 20;
    const auto deletes = static_cast<size_t>(plan.deletes());
    if (deletes == 0)
        return std::nullopt;
    const Texts& texts = context.session.texts();
    return unlessAgreed(context, texts.text("cli.sync.ask-trash", {{"count", deletes}}), [&] {
        const ActionLines lines(texts);
        for (size_t shown = 0; const SyncAction& each : plan.actions)
            if (each.kind == SyncAction::Kind::remove && shown++ < mostShown)
                lines.print(each);
        if (deletes > mostShown)
            print(texts.text("cli.sync.more", {{"count", deletes - mostShown}}) + "\n");
        printTotals(plan, texts);
    });
}

/// "1,204 of 20,000  34 MB/s  2 min left  photos/a.jpg" behind a bar.
class SyncLine {
public:
    explicit SyncLine(const Texts& texts) : texts_(texts) {}

    void show(const SyncJobProgress& progress) {
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        const double fraction = progress.fraction();
        std::string what =
            texts_.text("cli.sync.progress", {{"done", progress.done}, {"total", progress.total}});
        constexpr double longEnough = 1;
        if (seconds > longEnough && progress.bytes > 0)
            what += "  " + rateText(static_cast<double>(progress.bytes) / seconds, texts_.language());
        if (seconds > longEnough && fraction > 0)
            what +=
                "  " +
                texts_.text("cli.copy.left",
                            {{"time", durationText(seconds * (1 - fraction) / fraction, texts_.language())}});
        line_.show(fraction, what + "  " + fitting(progress.current, progressBar(fraction) + what));
    }

private:
    /// The path, in what is left of a line after `before`.
    static std::string fitting(std::string_view path, const std::string& before) {
        constexpr size_t spaces = 3;
        const size_t used = displayWidth(before) + spaces;
        return shorten(printable(path), terminalWidth() - std::min(terminalWidth(), used));
    }

    const Texts& texts_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    ProgressLine line_;
};

SyncJobResult carryOut(Context& context, const SyncPair& pair, SyncPlan plan) {
    OwnLoop own(context.session);
    const auto dependencies = app::automationDependencies(context.session, own.loop());
    SyncLine line(context.session.texts());
    automation::SyncJobRequest request{.pair = pair, .plan = std::move(plan)};
    request.progress = [&](const SyncJobProgress& progress) {
        line.show(progress);
    };
    return runSync(std::move(request), dependencies, {context.cancel, {}});
}

Exit printResult(Context& context, const SyncJobResult& done) {
    const Texts& texts = context.session.texts();
    if (!done.record) {
        complain(done.message);
        return Exit::failed;
    }
    for (const std::string& each : done.result.errors)
        complain(each);
    if (!done.trackingFailure.empty())
        complain(texts.text("cli.junk.untracked", {{"reason", done.trackingFailure}}));
    if (context.format == Format::json) {
        printJson(done.result);
        return exitOf(done.record->outcome);
    }
    print(done.message + "\n");
    if (done.result.deleted > 0)
        print(texts.text("cli.junk.undo-hint", {{"id", done.record->id.text()}}) + "\n");
    return exitOf(done.record->outcome);
}

Exit applyPlan(Context& context, const RunWords& words) {
    const auto pair = pairMeant(context, words);
    auto plan = pair ? planOf(context, *pair) : std::nullopt;
    if (!plan)
        return Exit::failed;
    if (plan->isEmpty()) {
        automation::SyncWatchFile(context.session.folders()).approve(pair->id);
        if (context.format == Format::json) {
            printJson(SyncResult{.leftOut = plan->leftOut});
        } else {
            print(context.session.texts().text("folder-sync.up-to-date-line",
                                               {{"name", printable(pair->title())}}) +
                  "\n");
            printLeftOut(*plan, context.session.texts());
        }
        return Exit::done;
    }
    if (const auto exit = unlessAgreed(context, *plan))
        return *exit;
    return printResult(context, carryOut(context, *pair, std::move(*plan)));
}

} // namespace

void describeSyncRuns(Verb& noun, CommandLine& line) {
    const auto words = std::make_shared<RunWords>();
    const auto verb = [&](const char* name, std::string help) -> Verb& {
        Verb& app = noun.verb(name, std::move(help));
        app.argument("PAIR", &words->pair, line.text("cli.sync.pair"));
        words->folders.addTo(app, line, false);
        return app;
    };
    line.on(verb("plan", line.text("cli.sync.plan")),
            [words](Context& context) { return showPlan(context, *words); });
    Verb& apply = verb("apply", line.text("cli.sync.apply"));
    line.onChange(apply, [words](Context& context) { return applyPlan(context, *words); });
}

} // namespace vh::cli
