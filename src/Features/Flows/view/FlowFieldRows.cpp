#include "Features/Flows/view/FlowFieldRows.h"

#include "Core/Printable.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowVariable.h"
#include "app/AppTexts.h"
#include "app/Options.h"

#include <algorithm>

namespace vh::app {

namespace {

using namespace flows;
using Kind = FlowField::Kind;

QString raw(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString name(std::string_view text) {
    return qtText(printable(text));
}

QString nameOf(Kind kind) {
    switch (kind) {
    case Kind::text:
        return QStringLiteral("text");
    case Kind::multiline:
        return QStringLiteral("multiline");
    case Kind::number:
        return QStringLiteral("number");
    case Kind::toggle:
        return QStringLiteral("toggle");
    case Kind::list:
        return QStringLiteral("list");
    case Kind::folder:
        return QStringLiteral("folder");
    case Kind::paths:
        return QStringLiteral("paths");
    case Kind::time:
        return QStringLiteral("time");
    case Kind::choice:
    case Kind::script:
    case Kind::flow:
    case Kind::computer:
    case Kind::volume:
        break;
    }
    return QStringLiteral("choice");
}

class Options {
public:
    Options(const Flow& flow, const FlowWords& words, const FlowFieldSources& sources)
        : flow_(flow), words_(words), sources_(sources) {}

    QVariantList of(const FlowField& field) const {
        QVariantList options = known(field);
        const QString value = raw(field.value);
        const bool isKnown = std::ranges::any_of(options, [&](const QVariant& each) {
            return each.toMap().value(QStringLiteral("value")) == value;
        });
        // What was chosen once stays to be seen, though it is not there now.
        if (!isKnown)
            options.prepend(option(value, value.isEmpty() ? words_.text("nodes-page.field.none")
                                                          : words_.text("nodes-page.field.missing",
                                                                        {{"name", printable(field.value)}})));
        return options;
    }

private:
    QVariantList known(const FlowField& field) const {
        QVariantList options;
        switch (field.kind) {
        case Kind::choice:
            for (const std::string& each : field.choices)
                options << option(raw(each), qtText(choiceTitle(field.key, each, words_.texts())));
            break;
        case Kind::script:
            for (const std::string& each : sources_.scripts())
                options << option(raw(each), name(each));
            break;
        case Kind::flow:
            for (const Flow& each : sources_.flows())
                if (each.id != flow_.id)
                    options << option(raw(each.id.text()), name(each.name));
            break;
        case Kind::computer:
            options << option({}, words_.text("nodes-page.field.same-computer"));
            for (const FlowNode& each : flow_.nodes)
                if (std::holds_alternative<ComputerNode>(each.kind))
                    options << option(raw(each.id.text()), words_.title(each));
            break;
        case Kind::volume:
            for (const FlowVolume& each : sources_.volumes())
                if (each.uuid)
                    options << option(raw(*each.uuid), name(each.name));
            break;
        default:
            break;
        }
        return options;
    }

    const Flow& flow_;
    const FlowWords& words_;
    const FlowFieldSources& sources_;
};

} // namespace

std::vector<FlowFieldRow> fieldRows(const FlowNode& node, const Flow& flow, const FlowWords& words,
                                    const FlowFieldSources& sources) {
    const Options options(flow, words, sources);
    std::vector<FlowFieldRow> rows;
    for (const FlowField& field : fieldsOf(node)) {
        const QString kind = nameOf(field.kind);
        rows.push_back({.fieldKey = raw(field.key),
                        .kind = kind,
                        .title = qtText(fieldTitle(field.key, words.texts())),
                        .value = raw(field.value),
                        .options = kind == QLatin1String("choice") ? options.of(field) : QVariantList(),
                        .takesVariables = field.takesVariables});
    }
    return rows;
}

QVariantList variableOptions(const Flow& flow, const FlowWords& words) {
    QVariantList options;
    const FlowTrigger* trigger = flow.start();
    for (const FlowVariable each : variablesOf(trigger ? *trigger : FlowTrigger(OnDemand{}))) {
        const Language language = words.texts().language();
        options << QVariantMap{{QStringLiteral("token"), qtText(tokenOf(each, language))},
                               {QStringLiteral("title"), qtText(nameOf(each, language))}};
    }
    return options;
}

} // namespace vh::app
