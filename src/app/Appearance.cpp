#include "app/Appearance.h"

#include "Core/UserDefaults.h"

namespace vh::app {

QStringList Appearance::values() {
    return {QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark")};
}

QString Appearance::value() const {
    const auto stored = QString::fromStdString(defaults_.get<std::string>(key).value_or(""));
    return values().contains(stored) ? stored : values().front();
}

void Appearance::set(const QString& value) {
    if (value == this->value() || !values().contains(value))
        return;
    defaults_.set(key, value.toStdString());
    emit changed();
}

} // namespace vh::app
