#include "ui/Tr.h"

#include "Core/Texts.h"
#include "app/AppTexts.h"
#include "ui/App.h"

#include <QJSValueIterator>

namespace vh::ui {

Tr* Tr::create(QQmlEngine* engine, QJSEngine* jsEngine) {
    auto* tr = App::create(engine, jsEngine)->tr();
    QJSEngine::setObjectOwnership(tr, QJSEngine::CppOwnership);
    return tr;
}

QJSValue Tr::function() {
    if (function_.isUndefined())
        function_ = qjsEngine(this)->toScriptValue(this).property(QStringLiteral("text"));
    return function_;
}

QString Tr::text(const QString& key, const QJSValue& arguments) const {
    std::vector<std::string> names;
    std::vector<TextValue> values;
    QJSValueIterator each(arguments);
    while (each.hasNext()) {
        each.next();
        names.push_back(each.name().toStdString());
        const auto value = each.value();
        if (value.isNumber())
            values.emplace_back(value.toNumber());
        else
            values.emplace_back(value.toString().toStdString());
    }
    std::vector<TextArgument> filled;
    for (size_t i = 0; i < names.size(); ++i)
        filled.push_back({names[i], values[i]});

    const auto& texts = texts_.current();
    const auto name = key.toStdString();
    if (!texts.has(name))
        qWarning("No text for \"%s\"", name.c_str());
    return QString::fromStdString(texts.text(name, filled));
}

} // namespace vh::ui
