#pragma once

#include <QString>
#include <QVariantMap>

namespace vh::app {

/// By which column the rows of a table are ordered; a page has it as a map of these names (SortHeading.qml).
struct ColumnOrder {
    QString key; ///< of the column; empty for the order that the rows have by themselves
    bool descending = false;

    QVariantMap map() const {
        return {{QStringLiteral("key"), key}, {QStringLiteral("descending"), descending}};
    }
    /// A heading was pressed: its own order at first, then the other way round. Words begin at A, figures and times with
    /// the largest and the latest.
    void press(const QString& column, bool beginsDescending) {
        *this = {column, column == key ? !descending : beginsDescending};
    }
};

} // namespace vh::app
