#include "menubar/popover/WatchListModel.h"

#include <algorithm>

namespace kelvo {

namespace {

using Row = WatchListModel::Row;

auto find(const std::vector<Row> &rows, ServiceID id)
{
    return std::find_if(rows.begin(), rows.end(), [id](const Row &row) { return row.service.id == id; });
}

} // namespace

void WatchListModel::update(const std::vector<Row> &rows)
{
    removeRowsNotIn(rows);
    for (std::size_t position = 0; position < rows.size(); ++position) {
        place(rows[position], position);
    }
}

void WatchListModel::removeRowsNotIn(const std::vector<Row> &rows)
{
    for (auto position = static_cast<int>(rows_.size()) - 1; position >= 0; --position) {
        if (find(rows, rows_[static_cast<std::size_t>(position)].service.id) == rows.end()) {
            beginRemoveRows({}, position, position);
            rows_.erase(rows_.begin() + position);
            endRemoveRows();
        }
    }
}

/// Moves or inserts `row` at `position`. All rows before `position` must be in place.
void WatchListModel::place(const Row &row, std::size_t position)
{
    const auto target = static_cast<int>(position);
    const auto found = find(rows_, row.service.id);
    if (found == rows_.end()) {
        beginInsertRows({}, target, target);
        rows_.insert(rows_.begin() + target, row);
        endInsertRows();
        return;
    }
    const auto current = static_cast<int>(found - rows_.begin());
    if (current != target) {
        beginMoveRows({}, current, current, {}, target);
        std::rotate(rows_.begin() + target, rows_.begin() + current, rows_.begin() + current + 1);
        endMoveRows();
    }
    auto &known = rows_[position];
    if (known.status.health != row.status.health || known.status.label != row.status.label) {
        known = row;
        Q_EMIT dataChanged(index(target), index(target), {healthRole, labelRole});
    }
}

int WatchListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant WatchListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const auto &row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case serviceRole: return rawValue(row.service.id);
    case nameRole: return row.service.name;
    case healthRole: return QVariant::fromValue(row.status.health);
    case labelRole: return row.status.label;
    default: return {};
    }
}

QHash<int, QByteArray> WatchListModel::roleNames() const
{
    return {
        {serviceRole, "service"},
        {nameRole, "name"},
        {healthRole, "health"},
        {labelRole, "label"},
    };
}

} // namespace kelvo
