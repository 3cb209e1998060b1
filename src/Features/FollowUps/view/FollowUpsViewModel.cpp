#include "Features/FollowUps/view/FollowUpsViewModel.h"

#include "Automation/Automation.h"
#include "Core/MailAddress.h"
#include "Core/Printable.h"
#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "Features/FollowUps/work/FollowUpsService.h"
#include "Features/FollowUps/work/RunFollowUps.h"
#include "Mail/MailSender.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/ModuleRegistry.h"
#include "app/Options.h"
#include "app/PathText.h"
#include "app/Session.h"
#include "app/ToolLook.h"

#include <QRegularExpression>
#include <algorithm>
#include <fmt/format.h>

namespace vh::app {

using automation::FollowUpWishes;

FollowUpsViewModel::FollowUpsViewModel(AppContext& context, AutomationLife& life)
    : context_(context), life_(life) {
    connect(&context_.texts(), &AppTexts::changed, this, &FollowUpsViewModel::changed);
    observing_ = followUps().observe([this] { emit changed(); });
}

automation::RunFollowUps& FollowUpsViewModel::followUps() const {
    return life_.automation().service<automation::FollowUpsService>().followUps();
}

QVariantList FollowUpsViewModel::tools() const {
    const Texts& texts = context_.texts().current();
    QVariantList list;
    const auto add = [&](std::string_view id, const QString& icon) {
        list << QVariantMap{
            {QStringLiteral("id"), qtText(id)},
            {QStringLiteral("name"), qtText(toolName(texts, id))},
            {QStringLiteral("icon"), icon},
            {QStringLiteral("line"), lineOf(qtText(id))},
        };
    };
    add("nodes", QStringLiteral("point.topleft.down.to.point.bottomright"));
    for (const ToolDescriptor& tool : ToolCatalog::all())
        if (context_.session().registry().hasEngine(tool.id))
            add(tool.id, toolIcon(tool.id));
    return list;
}

QVariantList FollowUpsViewModel::reportOptions() const {
    const AppTexts& texts = context_.texts();
    return {option({}, texts.text("follow-ups.report.none")),
            option(QStringLiteral("pdf"), texts.text("follow-ups.report.pdf")),
            option(QStringLiteral("csv"), texts.text("follow-ups.report.csv"))};
}

QStringList FollowUpsViewModel::knownAddresses() const {
    QStringList list;
    for (const std::string& address : followUps().knownAddresses())
        list << qtText(printable(address));
    return list;
}

bool FollowUpsViewModel::isMailReady() const {
    return life_.automation().mail().isReady();
}

QString FollowUpsViewModel::reportsFolder() const {
    return displayPath(followUps().reportsFolder(), context_.session().folders().home);
}

QString FollowUpsViewModel::lineOf(const QString& tool) const {
    const FollowUpWishes wishes = followUps().wishes(tool.toStdString());
    const AppTexts& texts = context_.texts();
    QStringList parts;
    if (!wishes.recipients.empty())
        parts << texts.text("follow-ups.mail", {{"count", wishes.recipients.size()},
                                                {"address", printable(wishes.recipients.front())}});
    if (wishes.report)
        parts << texts.text(fmt::format("follow-ups.report.{}", rawValue(*wishes.report)));
    return parts.join(QStringLiteral(" · "));
}

QVariantMap FollowUpsViewModel::wishes(const QString& tool) const {
    const FollowUpWishes wishes = followUps().wishes(tool.toStdString());
    QStringList recipients;
    for (const std::string& address : wishes.recipients)
        recipients << qtText(printable(address));
    return {{QStringLiteral("recipients"), recipients.join(QStringLiteral(", "))},
            {QStringLiteral("report"), wishes.report ? qtText(rawValue(*wishes.report)) : QString()}};
}

QString FollowUpsViewModel::save(const QString& tool, const QString& recipients, const QString& report) {
    static const QRegularExpression between(QStringLiteral("[\\s,;]+"));
    FollowUpWishes wishes;
    for (const QString& part : recipients.split(between, Qt::SkipEmptyParts)) {
        const std::string address = part.toStdString();
        if (!MailAddress::isValid(address))
            return context_.texts().text("mail.bad-address", {{"address", printable(address)}});
        if (std::ranges::find(wishes.recipients, address) == wishes.recipients.end())
            wishes.recipients.push_back(address);
    }
    wishes.report = fromRaw<automation::ReportFormat>(report.toStdString());
    try {
        followUps().setWishes(tool.toStdString(), wishes);
    } catch (const std::exception& error) {
        return context_.texts().errorText(error);
    }
    emit changed();
    return {};
}

} // namespace vh::app
