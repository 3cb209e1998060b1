#include "Tools/FolderSync/view/FolderSyncPlanModel.h"

#include "Core/Fold.h"
#include "Core/Printable.h"
#include "app/AppTexts.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh::app {

QString kindTitle(const AppTexts& texts, sync::SyncAction::Kind kind) {
    return texts.text(fmt::format("sync-page.kind.{}", rawValue(kind)));
}

void FolderSyncPlanModel::setPlan(Plan plan) {
    beginResetModel();
    plan_ = std::move(plan);
    done_ = 0;
    show();
    endResetModel();
}

void FolderSyncPlanModel::setFilter(std::optional<Kind> kind, const QString& search) {
    beginResetModel();
    kind_ = kind;
    needle_ = foldForSearch(search.trimmed().toStdString());
    show();
    endResetModel();
}

void FolderSyncPlanModel::setOrder(const ColumnOrder& order) {
    beginResetModel();
    order_ = order;
    show();
    endResetModel();
}

void FolderSyncPlanModel::show() {
    shown_.clear();
    if (!plan_)
        return;
    for (size_t i = 0; i < plan_->actions.size(); ++i) {
        const sync::SyncAction& action = plan_->actions[i];
        if ((!kind_ || action.kind == *kind_) &&
            (needle_.empty() || containsFolded(action.relativePath, needle_)))
            shown_.push_back(static_cast<uint32_t>(i));
    }
    if (order_.key == u"size")
        std::ranges::stable_sort(shown_, [&](uint32_t one, uint32_t other) {
            const int64_t a = plan_->actions[one].bytes, b = plan_->actions[other].bytes;
            return order_.descending ? b < a : a < b;
        });
}

int FolderSyncPlanModel::rowOf(int64_t action) const {
    return static_cast<int>(std::ranges::lower_bound(shown_, action) - shown_.begin());
}

int FolderSyncPlanModel::rowAtWork() const {
    return order_.key.isEmpty() ? std::min(rowOf(done_), rowCount() - 1) : -1;
}

void FolderSyncPlanModel::setDone(int64_t done) {
    const bool isPlanned = order_.key.isEmpty();
    const int first = isPlanned ? rowOf(std::min(done, done_)) : 0;
    const int end = isPlanned ? rowOf(std::max(done, done_)) : rowCount();
    done_ = done;
    if (first < end)
        emit dataChanged(index(first), index(end - 1), {doneRole});
}

void FolderSyncPlanModel::retell() {
    if (!shown_.empty())
        emit dataChanged(index(0), index(rowCount() - 1), {titleRole, sizeRole});
}

int FolderSyncPlanModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant FolderSyncPlanModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const uint32_t at = shown_[static_cast<size_t>(index.row())];
    const sync::SyncAction& action = plan_->actions[at];
    switch (role) {
    case kindRole:
        return qtText(rawValue(action.kind));
    case titleRole:
        return texts_.text(fmt::format("sync-page.each.{}", rawValue(action.kind)));
    case pathRole:
        return qtText(printable(action.relativePath));
    case sizeRole:
        // What goes with a folder is not counted.
        return action.kind == Kind::mkdir || (action.kind == Kind::remove && action.bytes == 0)
                   ? QString()
                   : texts_.sizeText(action.bytes);
    case doneRole:
        return at < done_;
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderSyncPlanModel::roleNames() const {
    return {{kindRole, "kind"},
            {titleRole, "kindTitle"},
            {pathRole, "path"},
            {sizeRole, "sizeText"},
            {doneRole, "isDone"}};
}

} // namespace vh::app
