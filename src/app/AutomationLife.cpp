#include "app/AutomationLife.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "HelperKit/HelperClient.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Session.h"

#include <algorithm>

namespace vh::app {

AutomationLife::AutomationLife(AppContext& context) : context_(context) {
    connect(&context_.activity(), &ActivityCenter::changed, this, &AutomationLife::changed);
}

AutomationLife::~AutomationLife() {
    if (!automation_)
        return;
    automation_->setOnLeading({});
}

automation::Automation& AutomationLife::automation() {
    if (automation_)
        return *automation_;
    automation_ = &context_.automation();
    observing_ = automation_->observe([this] { tellRunning(); });
    automation_->setOnLeading([this] { emit changed(); });
    return *automation_;
}

void AutomationLife::start(const QString& link) {
    if (std::exchange(started_, true))
        return;
    renewHelper();
    try {
        automation().attach();
        automation().lead();
    } catch (const std::exception& error) {
        emit said(context_.texts().errorText(error));
    }
    emit changed();
    if (!link.isEmpty())
        openLink(link);
}

void AutomationLife::renewHelper() {
    renewing_.run([&helper = context_.session().helper(), texts = context_.texts().current()](
                      const Background::Task&) { helper.refreshRegistrationAfterUpdate(texts); },
                  [](const std::future<void>&) {}); // what is wrong stands on the helper's page
}

bool AutomationLife::isLeading() const {
    return started_ && automation_->isLeading();
}

void AutomationLife::openLink(const QString& url) {
    start();
    if (const auto refusal = automation().openLink(url.toStdString()))
        emit said(qtText(printable(*refusal)));
}

QStringList AutomationLife::running() const {
    QStringList titles;
    for (const ActivityCenter::Job& job : context_.activity().running())
        if (job.atClosing == AtClosing::isAsked)
            titles << job.title;
    titles.removeDuplicates(); // a task that starts the one-button run is mostly called the same
    return titles;
}

void AutomationLife::stop() {
    automation().stop();
}

void AutomationLife::tellRunning() {
    QSet<QString> running;
    for (const automation::RunningWork& work : automation_->running()) {
        const QString key = qtText(work.key);
        running << key;
        context_.activity().report({.key = key,
                                    .title = qtText(printable(work.title)),
                                    .toolID = qtText(work.toolID),
                                    .progress = work.progress});
    }
    for (const QString& key : std::as_const(shown_))
        if (!running.contains(key))
            context_.activity().end(key);
    shown_ = running;
}

} // namespace vh::app
