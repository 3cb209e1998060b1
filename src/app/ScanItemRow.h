#pragma once

#include "Core/Uuid.h"
#include "app/RecordListModel.h"

#include <QString>

namespace vh::app {

/// One item of a scan as the list shows it.
struct ScanItemRow {
    Uuid id;
    QString name;
    QString path;
    QString displayPath;
    qint64 byteSize = 0;
    QString sizeText;
    double fraction = 0; ///< of the largest item
    QString category;
    QString categoryTitle;
    bool selected = false;
    bool isProtected = false;
    bool isRecent = false; ///< in use of late

    /// The identifiers are new with every scan.
    const QString& key() const { return path; }

    static std::span<const RecordListModel<ScanItemRow>::Role> roles();
};

} // namespace vh::app
