#pragma once

#include <QString>
#include <QVariantMap>

namespace vh::app {

/// One row of a choice, as views take it.
inline QVariantMap option(const QString& value, const QString& title) {
    return {{QStringLiteral("value"), value}, {QStringLiteral("title"), title}};
}

} // namespace vh::app
