#pragma once

#include "model/Service.h"
#include "model/ServiceStatus.h"

#include <QAbstractListModel>
#include <QQmlEngine>

#include <vector>

namespace kelvo {

/// The rows of the popover's watch list. An update changes only the rows that differ, so that a row under the pointer or
/// with the keyboard focus keeps its item.
class WatchListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The popover's state has one")

public:
    enum Role {
        serviceRole = Qt::UserRole, ///< "service": the raw value of its id
        nameRole,                   ///< "name"
        healthRole,                 ///< "health": a ServiceHealth
        labelRole,                  ///< "label": the label of the last check; empty before the first check
    };
    Q_ENUM(Role)

    struct Row
    {
        Service service;
        ServiceStatus status;
    };

    using QAbstractListModel::QAbstractListModel;

    void update(const std::vector<Row> &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void removeRowsNotIn(const std::vector<Row> &rows);
    void place(const Row &row, std::size_t position);

    std::vector<Row> rows_;
};

} // namespace kelvo
