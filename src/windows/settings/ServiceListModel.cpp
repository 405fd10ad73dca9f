#include "windows/settings/ServiceListModel.h"

#include "model/Service.h"

#include <algorithm>

namespace kelvo {

void ServiceListModel::update(const std::vector<Row> &rows)
{
    int position = 0;
    for (const auto &row : rows) {
        place(row, position++);
    }
    removeRowsFrom(position);
}

/// Moves or inserts `row` at `position`. All rows before `position` must be in place.
void ServiceListModel::place(const Row &row, int position)
{
    const auto target = rows_.begin() + position;
    const auto found = std::find_if(target, rows_.end(), [&row](const Row &other) { return other.id == row.id; });
    if (found == rows_.end()) {
        beginInsertRows({}, position, position);
        rows_.insert(target, row);
        endInsertRows();
        return;
    }
    if (found != target) {
        const auto current = static_cast<int>(found - rows_.begin());
        beginMoveRows({}, current, current, {}, position);
        std::rotate(target, found, found + 1);
        endMoveRows();
    }
    if (*target != row) {
        *target = row;
        Q_EMIT dataChanged(index(position), index(position), {isPrimaryRole, isOnRole, canToggleRole});
    }
}

void ServiceListModel::removeRowsFrom(int position)
{
    if (position == rowCount()) {
        return;
    }
    beginRemoveRows({}, position, rowCount() - 1);
    rows_.erase(rows_.begin() + position, rows_.end());
    endRemoveRows();
}

int ServiceListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ServiceListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const auto &row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case serviceRole: return rawValue(row.id);
    case nameRole: return Service::by(row.id).name;
    case isPrimaryRole: return row.isPrimary;
    case isOnRole: return row.isOn;
    case canToggleRole: return row.canToggle;
    default: return {};
    }
}

QHash<int, QByteArray> ServiceListModel::roleNames() const
{
    return {
        {serviceRole, "service"}, {nameRole, "name"},           {isPrimaryRole, "isPrimary"},
        {isOnRole, "isOn"},       {canToggleRole, "canToggle"},
    };
}

} // namespace kelvo
