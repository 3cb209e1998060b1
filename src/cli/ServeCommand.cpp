#include "Automation/Automation.h"
#include "Automation/Worker.h"
#include "Core/Csv.h"
#include "Core/DatabaseKeep.h"
#include "Core/Printable.h"
#include "Core/ToolTexts.h"
#include "HelperKit/HelperClient.h"
#include "Platform/PollLoop.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "app/SessionAutomation.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"

#include <fmt/format.h>
#include <set>

namespace vh {

namespace cli {

/// One line of what the server does.
struct ServerLine {
    Date date;
    std::string text;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::ServerLine> = record(field("date", &cli::ServerLine::date),
                                                         field("text", &cli::ServerLine::text));

} // namespace vh

namespace vh::cli {

namespace {

constexpr std::chrono::hours betweenTidying{6};
constexpr std::chrono::seconds longestEnding{10};
/// For mail and reports of what has just ended.
constexpr std::chrono::seconds longestFollowUp{5};

/// Automation without a window, which says what it does.
class Server {
public:
    explicit Server(Context& context)
        : context_(context), automation_(app::automationDependencies(context.session, loop_)),
          worker_(loop_) {}

    void run();

private:
    void begin();
    void renewHelper();
    void beginToLead();
    void say(std::string_view key, const std::vector<TextArgument>& arguments = {}) const;
    void sayTroubles();
    void runningChanged();
    void ended(const RunRecord& record) const;
    void end();
    bool isIdle() const { return automation_.running().empty(); }
    void tidy();

    Context& context_;
    PollLoop loop_;
    std::set<std::string> saidToRun_; ///< works whose beginning was said, by key and title
    std::set<std::string> troubles_;  ///< that were said
    automation::Automation automation_;
    std::shared_ptr<void> observing_;
    MainLoop::Token tidying_;
    automation::Worker worker_;
};

void Server::run() {
    begin();
    {
        const auto ending =
            loop_.watch(interruptDescriptor(), MainLoop::Readiness::readable, [this] { loop_.stop(); });
        loop_.run();
    }
    end();
}

void Server::begin() {
    renewHelper();
    automation_.attach();
    automation_.setOnRecord([this](const RunRecord& record) { ended(record); });
    automation_.setOnLeading([this] { beginToLead(); });
    observing_ = automation_.observe([this] { runningChanged(); });
    automation_.lead();
    if (!automation_.isLeading() && automation_.trouble().empty())
        say("cli.serve.waiting");
    sayTroubles();
}

void Server::renewHelper() {
    helper::HelperClient& client = context_.session.helper();
    worker_.run(
        [&client, texts = context_.session.texts()] {
            try {
                client.refreshRegistrationAfterUpdate(texts);
            } catch (const std::exception&) {
                // Whoever needs the helper is told what is wrong with it.
            }
        },
        [this, &client] {
            if (const std::string waits = client.lastError(); !waits.empty())
                say("cli.serve.trouble", {{"text", waits}});
        });
}

void Server::beginToLead() {
    say("cli.serve.leading");
    sayTroubles();
    tidy();
    tidying_ = loop_.every(betweenTidying, [this] { tidy(); });
}

void Server::say(std::string_view key, const std::vector<TextArgument>& arguments) const {
    const ServerLine line{systemNow(), context_.session.texts().text(key, arguments)};
    if (context_.format == Format::json)
        print(encodeJson(line) + "\n");
    else
        print(fmt::format("{}  {}\n", timestamp(line.date, LocalCalendar()), printable(line.text)));
    flush();
}

void Server::sayTroubles() {
    std::set<std::string> troubles;
    for (const std::string& each : automation_.troubles())
        troubles.insert(each);
    for (const std::string& each : troubles)
        if (!troubles_.contains(each))
            say("cli.serve.trouble", {{"text", each}});
    troubles_ = std::move(troubles);
}

void Server::runningChanged() {
    std::set<std::string> running;
    for (const automation::RunningWork& work : automation_.running()) {
        if (work.isOnlyLooking || work.saidAs.empty())
            continue;
        const std::string name = work.key + " " + work.title;
        if (!saidToRun_.contains(name))
            say(work.saidAs, {{"title", work.title}});
        running.insert(name);
    }
    saidToRun_ = std::move(running);
    sayTroubles();
}

void Server::ended(const RunRecord& record) const {
    const Texts& texts = context_.session.texts();
    say("cli.serve.ended", {{"tool", toolName(texts, record.toolID)},
                            {"outcome", texts.text(fmt::format("outcome.{}", rawValue(record.outcome)))},
                            {"summary", record.summary}});
}

/// Lets what runs come to its end, so that all of it is on record.
void Server::end() {
    say("cli.serve.ending");
    automation_.stop();
    const auto look = loop_.every(std::chrono::milliseconds(20), [this] {
        if (isIdle())
            loop_.post([this] { loop_.stop(); });
    });
    const auto limit = loop_.after(longestEnding, [this] { loop_.stop(); });
    if (!isIdle())
        loop_.run();
    automation_.finish(longestFollowUp);
}

void Server::tidy() {
    const UserDefaults& defaults = context_.session.defaults();
    const Date now = systemNow();
    worker_.run(
        [&log = context_.session.runLog(),
         runs = cutoff(defaults.get<Keep>(keepRunsKey).value_or(Keep::always), now),
         files = cutoff(defaults.get<Keep>(keepFilesKey).value_or(Keep::year), now)] {
            try {
                log.prune(runs, files);
            } catch (const std::exception&) {
                // A log that cannot be tidied now is tidied next time.
            }
        },
        [] {});
}

} // namespace

void describeServe(Verb& noun, CommandLine& line) {
    line.onChange(noun, [](Context& context) {
        Server(context).run();
        return Exit::done;
    });
}

} // namespace vh::cli
