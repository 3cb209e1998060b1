#include "app/ShellViewModel.h"

#include "Core/Fold.h"
#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "Core/UserDefaults.h"
#include "Platform/SystemError.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/ModuleRegistry.h"
#include "app/Session.h"
#include "app/ViewOffer.h"

#include <algorithm>

namespace vh::app {

namespace {

/// The primary tools of a section, then the others.
std::vector<const ToolDescriptor*> toolsOf(ToolSection section) {
    auto tools = ToolCatalog::mainTools(section);
    for (const ToolDescriptor* tool : ToolCatalog::tools(section))
        if (!tool->isPrimary())
            tools.push_back(tool);
    return tools;
}

} // namespace

ShellViewModel::ShellViewModel(AppContext& context)
    : context_(context), mode_(context.session().defaults().get<AppMode>(modeKey).value_or(AppMode::node)) {
    connect(&context_.texts(), &AppTexts::changed, this, &ShellViewModel::sectionsChanged);
    connect(&context_.activity(), &ActivityCenter::changed, this, &ShellViewModel::busyChanged);
    connect(this, &ShellViewModel::modeChanged, this, &ShellViewModel::sectionsChanged);
}

QString ShellViewModel::modeName() const {
    return qtText(rawValue(mode_));
}

void ShellViewModel::setMode(const QString& name) {
    const auto mode = fromRaw<AppMode>(name.toStdString());
    if (!mode || *mode == mode_)
        return;
    mode_ = *mode;
    try {
        context_.session().defaults().set(modeKey, mode_);
    } catch (const SystemError&) {
        // The window shows the mode all the same; it is only not remembered.
    }
    emit modeChanged();
}

QVariantList ShellViewModel::toolsThatAre(bool available, ToolSection section) const {
    QVariantList tools;
    for (const ToolDescriptor* tool : toolsOf(section))
        if (context_.session().registry().hasEngine(tool->id) == available)
            tools << QVariantMap{
                {QStringLiteral("id"), qtText(tool->id)},
                {QStringLiteral("name"), qtText(toolName(context_.texts().current(), tool->id))},
                {QStringLiteral("icon"), qtText(tool->sfSymbolName)},
            };
    return tools;
}

QVariantList ShellViewModel::sections() const {
    QVariantList list;
    for (const ToolSection section : vh::sections(mode_))
        if (const QVariantList tools = toolsThatAre(true, section); !tools.isEmpty())
            list << QVariantMap{
                {QStringLiteral("id"), qtText(rawValue(section))},
                {QStringLiteral("title"), qtText(sectionTitle(context_.texts().current(), section))},
                {QStringLiteral("tools"), tools},
            };
    return list;
}

QVariantList ShellViewModel::absentTools() const {
    QVariantList list;
    for (const ToolSection section : vh::sections(mode_))
        list += toolsThatAre(false, section);
    return list;
}

/// The page that counts the jobs of this name as its own although it is named otherwise.
static QString pageOfJobs(const QString& name) {
    for (const ViewOffer* offer : viewOffers())
        for (const PageRow& row : offer->pages)
            if (*row.jobsOf && name == QLatin1String(row.jobsOf))
                return QLatin1String(row.page);
    return {};
}

QVariantMap ShellViewModel::busy() const {
    QVariantMap counts;
    const auto count = [&](const QString& id) {
        counts[id] = counts.value(id).toInt() + 1;
    };
    for (const ActivityCenter::Job& job : context_.activity().running()) {
        if (const QString page = pageOfJobs(job.id); !page.isEmpty())
            count(page);
        if (const QString page = pageOfJobs(job.toolID); !page.isEmpty())
            count(page);
        else if (!job.toolID.isEmpty())
            count(qtText(ToolCatalog::resolve(job.toolID.toStdString())));
    }
    return counts;
}

QVariantMap ShellViewModel::tool(const QString& id) const {
    const ToolDescriptor* tool = ToolCatalog::tool(id.toStdString());
    if (!tool)
        return {};
    const Texts& texts = context_.texts().current();
    return {
        {QStringLiteral("id"), qtText(tool->id)},
        {QStringLiteral("name"), qtText(toolName(texts, tool->id))},
        {QStringLiteral("summary"), qtText(toolSummary(texts, tool->id))},
        {QStringLiteral("icon"), qtText(tool->sfSymbolName)},
        {QStringLiteral("section"), qtText(rawValue(tool->section))},
        {QStringLiteral("sectionTitle"), qtText(sectionTitle(texts, tool->section))},
        {QStringLiteral("complexity"), qtText(complexityLabel(texts, tool->complexity))},
        {QStringLiteral("hasEngine"), context_.session().registry().hasEngine(tool->id)},
    };
}

QString ShellViewModel::idOf(const QString& word) const {
    const ToolDescriptor* tool = ToolCatalog::tool(word.toStdString());
    if (!tool)
        tool = search_.named(word.toStdString());
    return tool ? qtText(tool->id) : QString();
}

QVariantList ShellViewModel::search(const QString& text) const {
    const Texts& texts = context_.texts().current();
    QVariantList there;
    QVariantList absent;
    for (const ToolDescriptor* tool : search_.find(text.toStdString(), texts.language())) {
        const bool available = context_.session().registry().hasEngine(tool->id);
        (available ? there : absent) << QVariantMap{
            {QStringLiteral("id"), qtText(tool->id)},
            {QStringLiteral("name"), qtText(toolName(texts, tool->id))},
            {QStringLiteral("summary"), qtText(toolSummary(texts, tool->id))},
            {QStringLiteral("icon"), qtText(tool->sfSymbolName)},
            {QStringLiteral("sectionTitle"), qtText(sectionTitle(texts, tool->section))},
            {QStringLiteral("available"), available},
        };
    }
    return there + absent;
}

bool ShellViewModel::matches(const QString& name, const QString& text) const {
    const QString folded = qtText(foldForSearch(name.toStdString()));
    const auto words = qtText(foldForSearch(text.toStdString())).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return std::ranges::all_of(words, [&](const QString& word) { return folded.contains(word); });
}

} // namespace vh::app
