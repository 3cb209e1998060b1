#include "Features/Home/view/HomeViewModel.h"

#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/RunWords.h"
#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "Core/VolumeTitle.h"
#include "Features/Home/view/TileLine.h"
#include "Platform/Host.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/ModuleRegistry.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"
#include "app/ToolLook.h"

#include <utility>

namespace vh::app {

namespace {

constexpr size_t recentCount = 5;
constexpr std::chrono::seconds refreshInterval{60};
/// Opening a long log takes the main thread some tens of milliseconds; by then the first frame is there.
constexpr std::chrono::milliseconds openLogDelay{100};

/// From what share of a disk in use it is worth a look, and worth a worry.
constexpr double warningShare = 0.9;
constexpr double badShare = 0.97;

QString toneOf(double share) {
    if (share >= badShare)
        return QStringLiteral("bad");
    return share >= warningShare ? QStringLiteral("warning") : QStringLiteral("normal");
}

std::string_view greetingKey(int hour) {
    if (hour >= 5 && hour < 12)
        return "home.greeting.morning";
    return hour >= 12 && hour < 19 ? "home.greeting.afternoon" : "home.greeting.evening";
}

} // namespace

struct HomeViewModel::Runs {
    std::vector<RunRecord> recent;
    std::map<std::string, RunRecord, std::less<>> last;
};

HomeViewModel::HomeViewModel(AppContext& context)
    : context_(context), hostName_(hostName()), systemName_(systemName()),
      toldOn_(context.calendar().startOfDay(context.now())) {
    connect(&context_.texts(), &AppTexts::changed, this, &HomeViewModel::retell);
    connect(&context_.activity(), &ActivityCenter::changed, this, &HomeViewModel::runningChanged);
    timer_.setInterval(refreshInterval);
    connect(&timer_, &QTimer::timeout, this, &HomeViewModel::refresh);
    timer_.start();
    QTimer::singleShot(openLogDelay, this, &HomeViewModel::openLog);
    readDisks();
}

HomeViewModel::~HomeViewModel() = default;

void HomeViewModel::openLog() {
    connect(&context_.runs(), &RunLogWatch::changed, this, &HomeViewModel::readRuns);
    readRuns();
}

void HomeViewModel::refresh() {
    readDisks();
    const Date today = context_.calendar().startOfDay(context_.now());
    if (std::exchange(toldOn_, today) == today)
        emit timeChanged();
    else
        retell();
}

void HomeViewModel::readDisks() {
    readingDisks_.run([](const Background::Task&) { return mountedVolumes(); },
                      [this](std::future<std::vector<Volume>> volumes) {
                          const QVariantList before = disks();
                          try {
                              volumes_ = volumes.get();
                          } catch (const std::exception&) {
                              // Shown as last known until the next look.
                              volumes_ = volumes_.value_or(std::vector<Volume>());
                          }
                          if (disks() != before)
                              emit disksChanged();
                          emit loadingChanged();
                      });
}

void HomeViewModel::readRuns() {
    readingRuns_.run(
        [&log = context_.session().runLog()](const Background::Task&) {
            Runs runs{.recent = log.recent(recentCount), .last = {}};
            for (const RunRecord& record : log.all())
                runs.last.insert_or_assign(std::string(ToolCatalog::resolve(record.toolID)), record);
            return runs;
        },
        [this](std::future<Runs> runs) {
            const QVariantList before = tools();
            runs_ = std::make_unique<Runs>(runs.get());
            emit recentChanged();
            if (tools() != before)
                emit toolsChanged();
            emit loadingChanged();
        });
}

void HomeViewModel::retell() {
    emit timeChanged();
    emit disksChanged();
    emit toolsChanged();
    emit runningChanged();
    emit recentChanged();
}

QString HomeViewModel::greeting() const {
    return context_.texts().text(greetingKey(context_.calendar().wallTime(context_.now()).hour));
}

QString HomeViewModel::hostLine() const {
    QStringList parts;
    for (const std::string& part : {hostName_, systemName_})
        if (!part.empty())
            parts << qtText(printable(part));
    const QString up = context_.texts().durationText(double(uptime().count()));
    parts << context_.texts().text("home.uptime", {{"duration", up.toStdString()}});
    return parts.join(QStringLiteral(" · "));
}

QVariantList HomeViewModel::disks() const {
    QVariantList list;
    for (const Volume& volume : volumes_.value_or(std::vector<Volume>())) {
        if (volume.totalBytes == 0)
            continue;
        const double share = 1 - double(volume.freeBytes) / double(volume.totalBytes);
        list << QVariantMap{
            {QStringLiteral("name"), qtText(volumeTitle(context_.texts().current(), volume))},
            {QStringLiteral("freeText"), context_.texts().sizeText(static_cast<int64_t>(volume.freeBytes))},
            {QStringLiteral("totalText"), context_.texts().sizeText(static_cast<int64_t>(volume.totalBytes))},
            {QStringLiteral("fraction"), share},
            {QStringLiteral("tone"), toneOf(share)},
        };
    }
    return list;
}

QVariantList HomeViewModel::toolsThatAre(bool available) const {
    const Texts& texts = context_.texts().current();
    QVariantList list;
    for (const std::string_view id : ToolCatalog::mainTools())
        if (context_.session().registry().hasEngine(id) == available)
            list << QVariantMap{
                {QStringLiteral("id"), qtText(id)},
                {QStringLiteral("name"), qtText(toolName(texts, id))},
                {QStringLiteral("icon"), toolIcon(id)},
                {QStringLiteral("line"), lineOf(id)},
            };
    return list;
}

QString HomeViewModel::lineOf(std::string_view toolID) const {
    if (runs_) {
        const auto last = runs_->last.find(toolID);
        if (last != runs_->last.end())
            return tileLine(timeOf(last->second) + QStringLiteral(" · ") +
                            qtText(printable(summaryOf(last->second, context_.texts().current()))));
    }
    return tileLine(qtText(toolSummary(context_.texts().current(), toolID)));
}

QString HomeViewModel::timeOf(const RunRecord& record) const {
    return DayTexts(context_.texts().current(), context_.calendar(), context_.now()).brief(record.startedAt);
}

QVariantList HomeViewModel::running() const {
    QVariantList list;
    for (const ActivityCenter::Job& job : context_.activity().running())
        list << QVariantMap{
            {QStringLiteral("id"), job.id},
            {QStringLiteral("title"), job.title},
            {QStringLiteral("toolID"), job.toolID},
            {QStringLiteral("icon"), toolIcon(job.toolID.toStdString())},
            {QStringLiteral("progress"), job.progress.value_or(-1)},
        };
    return list;
}

QVariantList HomeViewModel::recent() const {
    QVariantList list;
    if (!runs_)
        return list;
    for (const RunRecord& record : runs_->recent)
        list << QVariantMap{
            {QStringLiteral("runId"), qtText(record.id.text())},
            {QStringLiteral("toolName"),
             qtText(printable(toolName(context_.texts().current(), record.toolID)))},
            {QStringLiteral("summary"), qtText(printable(summaryOf(record, context_.texts().current())))},
            {QStringLiteral("outcome"), qtText(rawValue(record.outcome))},
            {QStringLiteral("outcomeTitle"),
             context_.texts().text("outcome." + std::string(rawValue(record.outcome)))},
            {QStringLiteral("timeText"), timeOf(record)},
        };
    return list;
}

} // namespace vh::app
