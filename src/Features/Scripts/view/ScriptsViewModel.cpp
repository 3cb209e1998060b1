#include "Features/Scripts/view/ScriptsViewModel.h"

#include "Automation/Automation.h"
#include "Automation/ScriptLibrary.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Platform/Process.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/DayTexts.h"
#include "app/Session.h"

namespace vh::app {

namespace {

/// More than anyone reads; what comes later takes the place of the beginning.
constexpr qsizetype shownOutput = 200'000;

QString plain(std::string_view bytes) {
    return qtText(bytes).remove(QChar(0));
}

} // namespace

ScriptsViewModel::ScriptsViewModel(AppContext& context, AutomationLife& life)
    : context_(context), life_(life) {
    connect(&context_.texts(), &AppTexts::changed, this, &ScriptsViewModel::scriptsChanged);
}

ScriptsViewModel::~ScriptsViewModel() = default;

automation::ScriptLibrary& ScriptsViewModel::library() const {
    return life_.automation().scripts();
}

QVariantList ScriptsViewModel::scripts() const {
    const DayTexts days(context_.texts().current(), context_.calendar(), context_.now());
    const auto row = [&](const QString& name, const QString& line, bool isChanged, bool isSystem) {
        return QVariantMap{{QStringLiteral("name"), name},
                           {QStringLiteral("line"), line},
                           {QStringLiteral("isChanged"), isChanged},
                           {QStringLiteral("isSystem"), isSystem}};
    };
    QVariantList list;
    for (const automation::SavedScript& script : library().scripts()) {
        const QString name = qtText(script.name);
        const bool isDraft = name == current_ ? isChanged() : drafts_.contains(name);
        list << row(name, days.full(script.changedAt), isDraft, script.isSystem);
    }
    return list;
}

ScriptsViewModel::Text ScriptsViewModel::savedText(const QString& name) const {
    const auto script = library().script(name.toStdString());
    return script ? Text{name, qtText(script->body)} : Text{};
}

void ScriptsViewModel::keepDraft() {
    if (!open_ || current_.isEmpty())
        return;
    if (isChanged())
        drafts_[current_] = edit_;
    else
        drafts_.erase(current_);
}

void ScriptsViewModel::show(const QString& name, bool isOpen) {
    current_ = name;
    open_ = isOpen;
    saved_ = name.isEmpty() ? Text{} : savedText(name);
    const auto draft = drafts_.find(name);
    edit_ = draft == drafts_.end() ? saved_ : draft->second;
    drafts_.erase(name);
    say({});
    emit currentChanged();
    emit editChanged();
    emit scriptsChanged();
}

void ScriptsViewModel::open(const QString& name) {
    if (open_ && name == current_)
        return;
    const auto script = library().script(name.toStdString());
    if (!script)
        return refresh();
    if (qtText(script->body).toStdString() != script->body)
        return say(context_.texts().text("scripts.no-text", {{"name", printable(script->name)}}));
    keepDraft();
    show(name, true);
}

void ScriptsViewModel::create() {
    keepDraft();
    show({}, true);
}

void ScriptsViewModel::setName(const QString& name) {
    if (name == edit_.name)
        return;
    edit_.name = name;
    emit editChanged();
}

void ScriptsViewModel::setBody(const QString& body) {
    if (body == edit_.body)
        return;
    edit_.body = body;
    emit editChanged();
}

bool ScriptsViewModel::save() {
    const QString name = edit_.name.trimmed();
    if (const auto fault = automation::ScriptLibrary::faultOf(name.toStdString())) {
        say(context_.texts().text(*fault));
        return false;
    }
    if (name != current_ && library().script(name.toStdString())) {
        say(context_.texts().text("scripts.exists", {{"name", name.toStdString()}}));
        return false;
    }
    try {
        library().save(name.toStdString(), edit_.body.toStdString());
        if (!current_.isEmpty() && name != current_)
            library().remove(current_.toStdString());
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
        return false;
    }
    drafts_.erase(current_);
    show(name, true);
    return true;
}

void ScriptsViewModel::revert() {
    drafts_.erase(current_);
    edit_ = saved_;
    show(current_, !current_.isEmpty());
}

void ScriptsViewModel::remove() {
    try {
        if (!current_.isEmpty())
            library().remove(current_.toStdString());
    } catch (const std::exception& error) {
        return say(context_.texts().errorText(error));
    }
    drafts_.erase(current_);
    show({}, false);
}

void ScriptsViewModel::run() {
    if (isRunning() || (isChanged() && !save()))
        return;
    if (const auto script = library().script(current_.toStdString()); script && script->isSystem)
        return say(context_.texts().text("scripts.wants-root", {{"name", current_.toStdString()}}));
    output_.clear();
    outcome_.clear();
    outcomeText_.clear();
    say({});
    const auto record = context_.session().runLog().begin("scripts", Trigger::manual);
    running_.run([this, path = library().pathOf(current_.toStdString())](
                     const Background::Task& task) { return execute(path, task); },
                 [this, record, name = current_](std::future<ProcessResult> result) {
                     const End end = endOf(std::move(result));
                     outcome_ = qtText(rawValue(end.outcome));
                     const Texts texts = context_.texts().current();
                     outcomeText_ = qtText(worded(end.said, texts));
                     const Message said{"run.named", {{"name", name.toStdString()}, {"text", end.said}}};
                     record->finish(end.outcome, RunWords({said}, texts));
                     emit runChanged();
                 });
    emit runChanged();
}

ProcessResult ScriptsViewModel::execute(const std::string& path, const Background::Task& task) {
    ProcessRequest request = automation::ScriptLibrary::requestFor(path);
    request.output = ProcessOutput::combined;
    request.folder = context_.session().folders().home;
    request.onOutput = [this, task](std::string_view piece) {
        task.tell([this, text = std::string(piece)] { append(text); });
    };
    return runProcess(request, task.cancel);
}

ScriptsViewModel::End ScriptsViewModel::endOf(std::future<ProcessResult> future) const {
    try {
        const ProcessResult result = future.get();
        switch (result.end) {
        case ProcessEnd::cancelled:
            return {Outcome::cancelled, {"outcome.cancelled", {}}};
        case ProcessEnd::exited:
            return {result.status == 0 ? Outcome::success : Outcome::failed,
                    {"scripts.exit", {{"status", result.status}}}};
        default:
            return {Outcome::failed, {"scripts.signal", {{"signal", result.status}}}};
        }
    } catch (const std::exception& error) {
        return {Outcome::failed, messageOf(error)};
    }
}

void ScriptsViewModel::append(const std::string& piece) {
    output_ = (output_ + plain(piece)).right(shownOutput);
    emit runChanged();
}

void ScriptsViewModel::stop() {
    running_.cancel();
}

void ScriptsViewModel::refresh() {
    emit scriptsChanged();
}

void ScriptsViewModel::say(const QString& message) {
    if (message == message_)
        return;
    message_ = message;
    emit messageChanged();
}

} // namespace vh::app
