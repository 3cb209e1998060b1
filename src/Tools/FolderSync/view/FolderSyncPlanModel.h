#pragma once

#include "Tools/FolderSync/SyncPlan.h"
#include "app/ColumnOrder.h"

#include <QAbstractListModel>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vh::app {

class AppTexts;

/// The actions of a plan as rows: the plan stays as it is, and only what a view asks for becomes text. Main thread.
class FolderSyncPlanModel : public QAbstractListModel {
    Q_OBJECT
public:
    using Kind = sync::SyncAction::Kind;
    using Plan = std::shared_ptr<const sync::SyncPlan>;

    explicit FolderSyncPlanModel(const AppTexts& texts) : texts_(texts) {}

    /// May be null.
    void setPlan(Plan plan);
    const Plan& plan() const { return plan_; }
    /// Shows those of one kind, or all, whose path holds the text.
    void setFilter(std::optional<Kind> kind, const QString& search);
    /// By "size", the largest first or last; by nothing in the order in which they are carried out, of which only that one
    /// has a row at work.
    void setOrder(const ColumnOrder& order);
    /// How many actions, from the first on, have been carried out.
    void setDone(int64_t done);
    /// The first row that is not done; -1 without rows, or in another order.
    int rowAtWork() const;
    /// The language has changed.
    void retell();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    enum Role { kindRole = Qt::UserRole, titleRole, pathRole, sizeRole, doneRole };

    void show();
    int rowOf(int64_t action) const;

    const AppTexts& texts_;
    Plan plan_;
    std::optional<Kind> kind_;
    std::string needle_; ///< folded
    ColumnOrder order_;
    std::vector<uint32_t> shown_;
    int64_t done_ = 0;
};

/// "New", "Changed"… of many.
QString kindTitle(const AppTexts& texts, sync::SyncAction::Kind kind);

} // namespace vh::app
