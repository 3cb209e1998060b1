#pragma once

#include <QAbstractListModel>
#include <algorithm>
#include <concepts>
#include <span>
#include <utility>
#include <vector>

namespace vh::app {

/// A list for a view, its roles told by a table. `Row::key()` says which row is the same one after a change, so that
/// a view keeps its place.
template <class Row>
class RecordListModel : public QAbstractListModel {
public:
    struct Role {
        const char* name;
        QVariant (*value)(const Row&);
    };
    /// A role that is a member as it stands.
    template <auto Member>
    static constexpr Role role(const char* name) {
        return {name, [](const Row& row) {
                    return QVariant::fromValue(row.*Member);
                }};
    }

    explicit RecordListModel(std::span<const Role> roles) : roles_(roles) {}

    const std::vector<Row>& rows() const { return rows_; }

    /// Takes the place of all rows. Those at the start and at the end whose keys are as before stay; where rows can be
    /// compared, only those that differ are told as changed.
    void setRows(std::vector<Row> rows);
    /// Changes rows in place, keys aside.
    template <class Change>
    void change(Change change);

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void replace(size_t first, size_t end, std::vector<Row>& rows);
    void tellChanged(size_t first, size_t end);

    std::span<const Role> roles_;
    std::vector<Row> rows_;
};

template <class Row>
void RecordListModel<Row>::setRows(std::vector<Row> rows) {
    const auto same = [](const Row& a, const Row& b) {
        return a.key() == b.key();
    };
    const size_t shorter = std::min(rows.size(), rows_.size());
    size_t head = 0;
    while (head < shorter && same(rows[head], rows_[head]))
        ++head;
    size_t tail = 0;
    while (tail < shorter - head && same(rows[rows.size() - 1 - tail], rows_[rows_.size() - 1 - tail]))
        ++tail;

    const auto at = static_cast<std::ptrdiff_t>(head);
    const auto last = [&](const auto& list) {
        return static_cast<std::ptrdiff_t>(list.size() - tail);
    };
    if (head + tail < rows_.size()) {
        beginRemoveRows({}, static_cast<int>(at), static_cast<int>(last(rows_)) - 1);
        rows_.erase(rows_.begin() + at, rows_.begin() + last(rows_));
        endRemoveRows();
    }
    if (head + tail < rows.size()) {
        beginInsertRows({}, static_cast<int>(at), static_cast<int>(last(rows)) - 1);
        rows_.insert(rows_.begin() + at, std::make_move_iterator(rows.begin() + at),
                     std::make_move_iterator(rows.begin() + last(rows)));
        endInsertRows();
    }
    replace(0, head, rows);
    replace(rows_.size() - tail, rows_.size(), rows);
}

template <class Row>
void RecordListModel<Row>::replace(size_t first, size_t end, std::vector<Row>& rows) {
    size_t told = first;
    for (size_t i = first; i < end; ++i) {
        if constexpr (std::equality_comparable<Row>)
            if (rows_[i] == rows[i]) {
                tellChanged(told, i);
                told = i + 1;
                continue;
            }
        rows_[i] = std::move(rows[i]);
    }
    tellChanged(told, end);
}

template <class Row>
template <class Change>
void RecordListModel<Row>::change(Change change) {
    std::ranges::for_each(rows_, change);
    tellChanged(0, rows_.size());
}

template <class Row>
QVariant RecordListModel<Row>::data(const QModelIndex& index, int role) const {
    const int at = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || at < 0 || at >= static_cast<int>(roles_.size()))
        return {};
    return roles_[static_cast<size_t>(at)].value(rows_[static_cast<size_t>(index.row())]);
}

template <class Row>
QHash<int, QByteArray> RecordListModel<Row>::roleNames() const {
    QHash<int, QByteArray> names;
    for (size_t i = 0; i < roles_.size(); ++i)
        names.insert(Qt::UserRole + static_cast<int>(i), roles_[i].name);
    return names;
}

template <class Row>
void RecordListModel<Row>::tellChanged(size_t first, size_t end) {
    if (first < end)
        emit dataChanged(index(static_cast<int>(first)), index(static_cast<int>(end) - 1));
}

} // namespace vh::app
