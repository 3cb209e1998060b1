#include "Features/Flows/view/FlowListViewModel.h"

#include "Automation/Automation.h"
#include "Core/Codec.h"
#include "Core/Printable.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/view/FlowRunValues.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Platform/Files.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <algorithm>

namespace vh::app {

namespace {

using namespace flows;

/// An export is for others to read too, as far as the folder lets them.
constexpr unsigned exportMode = 0644;

std::optional<Uuid> idOf(const QString& text) {
    return Uuid::parse(text.toStdString());
}

/// A name that can stand in a folder.
QString fileName(const std::string& name) {
    QString file = qtText(printable(name)).replace(u'/', u'-').trimmed();
    while (file.startsWith(u'.'))
        file.remove(0, 1);
    return file.isEmpty() ? QStringLiteral("flow") : file;
}

} // namespace

FlowListViewModel::FlowListViewModel(AppContext& context, automation::Automation& automation)
    : context_(context), automation_(automation), service_(automation.service<automation::FlowsService>()) {
    connect(&context_.texts(), &AppTexts::changed, this, &FlowListViewModel::refresh);
    observingStore_ = service_.store().observe([this] { refresh(); });
    observingRunner_ = service_.runner().observe([this](const Uuid&) { refresh(); });
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] {
        watch();
        service_.store().load();
        refresh(); // a run that began or ended elsewhere changes no flow
    });
    watch();
    refresh();
}

FlowListViewModel::~FlowListViewModel() = default;

void FlowListViewModel::watch() {
    const std::string& folder = service_.store().folder();
    const QString path = QString::fromStdString(folder);
    if (watcher_.directories().contains(path))
        return;
    if (attempt([&] { makeFolders(folder); }))
        watcher_.addPath(path);
}

FlowWords FlowListViewModel::words() const {
    return {context_.texts().current(), context_.session().folders().home};
}

FlowRow FlowListViewModel::row(const Flow& flow, const QString& from) const {
    const FlowWords said = words();
    FlowRow row{.id = flow.id,
                .flowId = qtText(flow.id.text()),
                .name = qtText(printable(flow.name)),
                .startText = said.startLine(flow),
                .from = from,
                .running = service_.runner().isRunning(flow.id)};
    const auto blockers = service_.runner().blockers(flow);
    if (!blockers.empty())
        row.problemText = said.text("nodes-page.list.problems", {{"count", blockers.size()}});
    if (const auto run = service_.store().lastRun(flow.id)) {
        const FlowNodeOutcome outcome = run->outcome(flow);
        row.lastOutcome = qtText(rawValue(outcome));
        row.lastTitle = said.outcome(outcome);
        row.lastTime = DayTexts(said.texts(), context_.calendar(), context_.now()).brief(run->startedAt);
    }
    return row;
}

void FlowListViewModel::refresh() {
    auto& store = service_.store();
    std::vector<FlowRow> rows;
    for (const Flow& flow : store.flows())
        rows.push_back(row(flow, {}));
    for (const CompanyFlow& each : store.companyFlows())
        rows.push_back(row(each.flow, qtText(printable(each.from))));
    flows_.setRows(std::move(rows));

    QStringList damaged;
    for (const std::string& path : store.damaged())
        damaged << displayPath(path, context_.session().folders().home);
    damagedText_ = damaged.join(QStringLiteral(", "));
    emit changed();
}

int FlowListViewModel::runningCount() const {
    return static_cast<int>(std::ranges::count(flows_.rows(), true, &FlowRow::running));
}

int FlowListViewModel::indexOf(const QString& flowId) const {
    const auto found = std::ranges::find(flows_.rows(), flowId, &FlowRow::flowId);
    return found == flows_.rows().end() ? -1 : static_cast<int>(found - flows_.rows().begin());
}

QVariantMap FlowListViewModel::facts(const QString& flowId) const {
    const int at = indexOf(flowId);
    if (at < 0)
        return {};
    const FlowRow& row = flows_.rows()[static_cast<size_t>(at)];
    return {{QStringLiteral("name"), row.name},
            {QStringLiteral("from"), row.from},
            {QStringLiteral("running"), row.running}};
}

std::string FlowListViewModel::freeName(const std::string& pattern, const std::string& name) const {
    return service_.store().freeName([&](int number) {
        if (number == 1 && !name.empty() && pattern.empty())
            return name;
        if (pattern.empty())
            return name + " " + std::to_string(number);
        return context_.texts().text(pattern, {{"name", name}, {"number", number}}).toStdString();
    });
}

QString FlowListViewModel::create() {
    QString made;
    attempt([&] {
        Flow flow = Flow::blank(freeName("nodes-page.new-name", {}), context_.now());
        made = qtText(service_.store().save(std::move(flow)).id.text());
    });
    return made;
}

QString FlowListViewModel::duplicate(const QString& flowId) {
    QString made;
    auto& store = service_.store();
    const auto id = idOf(flowId);
    const Flow* flow = id ? store.anyFlow(*id) : nullptr;
    if (flow)
        attempt([&] {
            if (const auto copy = store.duplicate(*id, freeName("nodes-page.copy-name", flow->name)))
                made = qtText(copy->id.text());
        });
    return made;
}

QString FlowListViewModel::importFile(const QString& fileUrlOrPath) {
    QString made;
    auto& store = service_.store();
    const std::string path = chosenPath(fileUrlOrPath, context_.session().folders().home);
    attempt([&] {
        try {
            Flow flow = decodeJson<Flow>(readFile(path));
            if (store.anyFlow(flow.id))
                flow = flow.renewed();
            flow.name = freeName({}, flow.name);
            made = qtText(store.save(std::move(flow)).id.text());
        } catch (const DecodeError& error) {
            say(context_.texts().text("nodes-page.import.no-flow", {{"file", displayName(path).toStdString()},
                                                                    {"reason", printable(error.what())}}));
        }
    });
    return made;
}

bool FlowListViewModel::rename(const QString& flowId, const QString& name) {
    auto& store = service_.store();
    const auto id = idOf(flowId);
    const Flow* found = id ? store.flow(*id) : nullptr;
    if (!found || name.trimmed().isEmpty())
        return false;
    return attempt([&] {
        Flow flow = *found;
        flow.name = name.trimmed().toStdString();
        store.save(std::move(flow));
    });
}

bool FlowListViewModel::remove(const QString& flowId) {
    const auto id = idOf(flowId);
    if (!id)
        return false;
    service_.runner().stop(*id);
    return attempt([&] {
        if (service_.store().isCompany(*id))
            service_.store().removeCompany(*id);
        else
            service_.store().remove(*id);
    });
}

QString FlowListViewModel::exportPath(const QString& flowId, const QString& folder) const {
    const auto id = idOf(flowId);
    const Flow* flow = id ? service_.store().anyFlow(*id) : nullptr;
    if (!flow)
        return {};
    const QString start = folder + u'/' + fileName(flow->name);
    const std::string& home = context_.session().folders().home;
    QString path = start + QStringLiteral(".json");
    for (int number = 2; statusOf(chosenPath(path, home)); ++number)
        path = start + QStringLiteral(" %1.json").arg(number);
    return path;
}

bool FlowListViewModel::exportFile(const QString& flowId, const QString& fileUrlOrPath) {
    const auto id = idOf(flowId);
    const Flow* flow = id ? service_.store().anyFlow(*id) : nullptr;
    const std::string path = chosenPath(fileUrlOrPath, context_.session().folders().home);
    if (!flow || path.empty())
        return false;
    return attempt([&] { writeFileAtomically(path, encodeJson(*flow, JsonStyle::pretty), exportMode); });
}

QVariantList FlowListViewModel::neededValues(const QString& flowId) const {
    const auto id = idOf(flowId);
    const Flow* flow = id ? service_.store().anyFlow(*id) : nullptr;
    return flow && !service_.runner().refusal(*flow) ? app::neededValues(*flow, words()) : QVariantList();
}

void FlowListViewModel::run(const QString& flowId, const QVariantMap& values) {
    const auto id = idOf(flowId);
    const Flow* flow = id ? service_.store().anyFlow(*id) : nullptr;
    say({});
    if (!flow)
        return;
    if (const auto refusal = service_.runner().refusal(*flow)) {
        say(qtText(*refusal));
        return;
    }
    automation::FlowStart how;
    how.values = runValues(values, context_.session().folders().home);
    service_.runner().start(*flow, how);
}

void FlowListViewModel::stop(const QString& flowId) {
    if (const auto id = idOf(flowId))
        service_.runner().stop(*id);
}

bool FlowListViewModel::attempt(const std::function<void()>& act) {
    try {
        say({});
        act();
        return true;
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
        return false;
    }
}

void FlowListViewModel::say(const QString& message) {
    if (message == message_)
        return;
    message_ = message;
    emit messageChanged();
}

} // namespace vh::app
