#pragma once

#include "Tools/FastCopy/CopyReport.h"

#include <QAbstractListModel>
#include <memory>
#include <vector>

namespace vh::app {

class AppContext;

/// The files of a copy's report as a list. Rows are put into words when they are shown: a report of some hundred
/// thousand files costs no more than what it holds anyway.
class CopyFilesModel : public QAbstractListModel {
    Q_OBJECT
public:
    explicit CopyFilesModel(AppContext& context) : context_(context) {}

    /// None for a null one. `faultyOnly` leaves out what went well.
    void show(std::shared_ptr<const copy::CopyReport> report, bool faultyOnly);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    enum Role { name = Qt::UserRole, place, sizeText, outcome, stateTitle, checksum };

    AppContext& context_;
    std::shared_ptr<const copy::CopyReport> report_;
    std::vector<size_t> shown_; ///< positions in the report
};

} // namespace vh::app
