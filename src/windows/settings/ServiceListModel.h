#pragma once

#include "model/ServiceID.h"

#include <QAbstractListModel>
#include <QQmlEngine>

#include <vector>

namespace kelvo {

/// The rows of the services list in the user's order. An update moves rows instead of creating new ones, so that a row
/// keeps the keyboard focus.
class ServiceListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window's state has one")

public:
    enum Role {
        serviceRole = Qt::UserRole, ///< "service": the raw value of its id
        nameRole,                   ///< "name"
        isPrimaryRole,              ///< "isPrimary": whether it is the first watched service
        isOnRole,                   ///< "isOn": whether it is watched
        canToggleRole,              ///< "canToggle": false for the only watched service
    };
    Q_ENUM(Role)

    struct Row
    {
        ServiceID id;
        bool isPrimary;
        bool isOn;
        bool canToggle;
        bool operator==(const Row &) const = default;
    };

    using QAbstractListModel::QAbstractListModel;

    /// Replaces the rows. A service may occur more than once.
    void update(const std::vector<Row> &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void place(const Row &row, int position);
    void removeRowsFrom(int position);

    std::vector<Row> rows_;
};

} // namespace kelvo
