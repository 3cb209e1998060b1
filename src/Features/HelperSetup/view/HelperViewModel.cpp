#include "Features/HelperSetup/view/HelperViewModel.h"

#include "Core/Printable.h"
#include "HelperKit/HelperClient.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"

namespace vh::app {

namespace {

QString shown(const std::string& text) {
    return qtText(printable(text));
}

std::string textOf(const std::exception& error, const Texts& texts) {
    if (const auto* known = dynamic_cast<const helper::HelperClientError*>(&error))
        return known->text(texts);
    return error.what();
}

} // namespace

HelperViewModel::HelperViewModel(AppContext& context, helper::HelperClient& client)
    : context_(context), client_(client) {
    connect(&context_.texts(), &AppTexts::changed, this, &HelperViewModel::changed);
}

QString HelperViewModel::stage() const {
    if (!seen_)
        return {};
    if (seen_->status != HelperRegistrationStatus::enabled)
        return qtText(rawValue(seen_->status));
    if (seen_->isOld)
        return QStringLiteral("old");
    return seen_->silence.empty() ? QStringLiteral("working") : QStringLiteral("silent");
}

QString HelperViewModel::act() const {
    if (!act_)
        return {};
    static constexpr const char* names[] = {"look", "setUp", "repair", "remove"};
    return QLatin1String(names[static_cast<size_t>(*act_)]);
}

QString HelperViewModel::failure() const {
    return seen_ ? shown(seen_->failure) : QString();
}

QString HelperViewModel::silence() const {
    return seen_ ? shown(seen_->silence) : QString();
}

QString HelperViewModel::system() const {
    return qtText(rawValue(helper::thisSystem()));
}

QVariantList HelperViewModel::facts() const {
    QVariantList list;
    const AppTexts& texts = context_.texts();
    const auto add = [&](const QString& label, const QString& value) {
        list << QVariantMap{{QStringLiteral("label"), label}, {QStringLiteral("value"), value}};
    };
    if (seen_ && !seen_->answer.empty()) {
        add(texts.text("helper-setup.fact.answer"), shown(seen_->answer));
        const QString seconds = localeOf(texts.language()).toString(seen_->seconds * 1000, 'f', 1);
        add(texts.text("helper-setup.fact.time"),
            texts.text("helper-setup.fact.milliseconds", {{"time", seconds.toStdString()}}));
    }
    if (seen_ && seen_->build)
        add(texts.text("helper-setup.fact.build"), shown(*seen_->build));
    return list;
}

void HelperViewModel::ping(helper::HelperClient& client, Seen& seen, const Texts& texts) {
    const auto start = std::chrono::steady_clock::now();
    try {
        seen.answer = client.pingOrThrow();
        seen.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    } catch (const std::exception& error) {
        seen.silence = textOf(error, texts);
    }
}

HelperViewModel::Seen HelperViewModel::done(helper::HelperClient& client, Act act, const Texts& texts) {
    Seen seen;
    try {
        switch (act) {
        case Act::look:
            break;
        case Act::setUp:
            client.registerHelper();
            break;
        case Act::repair:
            client.repair();
            break;
        case Act::remove:
            client.unregisterHelper();
            break;
        }
    } catch (const std::exception& error) {
        seen.failure = textOf(error, texts);
    }
    seen.status = client.refreshStatus();
    seen.asks = client.mustAsk();
    seen.build = client.registeredBuild();
    seen.isOld = !client.lastError().empty();
    if (seen.status == HelperRegistrationStatus::enabled)
        ping(client, seen, texts);
    return seen;
}

void HelperViewModel::perform(Act act) {
    if (act_)
        return;
    act_ = act;
    working_.run([&client = client_, act, texts = context_.texts().current()](
                     const Background::Task&) { return done(client, act, texts); },
                 [this](std::future<Seen> seen) {
                     act_.reset();
                     try {
                         seen_ = seen.get();
                     } catch (const std::exception& error) {
                         seen_ = Seen{.failure = error.what()};
                     }
                     emit changed();
                 });
    emit changed();
}

} // namespace vh::app
