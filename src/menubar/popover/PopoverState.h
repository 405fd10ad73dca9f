#pragma once

#include "menubar/popover/WatchListModel.h"
#include "monitor/StatusStore.h"
#include "settings/SettingsStore.h"

#include <QHash>
#include <QObject>
#include <QQmlEngine>

#include <optional>

namespace kelvo {

/// The state that the popover's views show. All values are computed from the stores when they are read. While the popover
/// is closed, no change signal is emitted, so nothing is read.
class PopoverState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program, of its stores")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged FINAL)
    Q_PROPERTY(QString heroName READ heroName NOTIFY changed FINAL)
    Q_PROPERTY(bool heroIsPromoted READ heroIsPromoted NOTIFY changed FINAL)
    Q_PROPERTY(kelvo::ServiceHealth heroHealth READ heroHealth NOTIFY changed FINAL)
    Q_PROPERTY(QString heroStatusLabel READ heroStatusLabel NOTIFY changed FINAL)
    Q_PROPERTY(QString heroBodyLine READ heroBodyLine NOTIFY changed FINAL)
    Q_PROPERTY(QString checkedText READ checkedText NOTIFY changed FINAL)
    Q_PROPERTY(QString spokenHero READ spokenHero NOTIFY changed FINAL)
    Q_PROPERTY(QString groupHeading READ groupHeading NOTIFY changed FINAL)
    Q_PROPERTY(kelvo::WatchListModel *rows READ rows CONSTANT FINAL)
    Q_PROPERTY(QString armedChannelLabel READ armedChannelLabel NOTIFY changed FINAL)

public:
    /// The stores must outlive this object.
    PopoverState(StatusStore &store, SettingsStore &settings);

    bool isOpen() const { return isOpen_; }
    /// The name of the hero, or "No service" when there is none.
    QString heroName() const;
    bool heroIsPromoted() const { return store_.heroIsPromoted(); }
    ServiceHealth heroHealth() const { return heroStatus().health; }
    QString heroStatusLabel() const { return store_.heroStatusLabel(); }
    QString heroBodyLine() const { return store_.heroBodyLine(); }
    QString checkedText() const;
    /// What a screen reader says for the hero: its name, its status, and the time of the last check.
    QString spokenHero() const;
    QString groupHeading() const { return store_.groupHeading(); }
    WatchListModel *rows() { return &rows_; }
    QString armedChannelLabel() const { return settings_.armedChannelLabel(); }

    /// Called when the popover opens. Updates all values, and checks all services on the next turn of the event loop.
    void open();
    /// Called when the popover has closed.
    void close();

    /// Peeks at a service, given by its raw value. Peeking at the same service again ends the peek.
    Q_INVOKABLE void peek(const QString &service);
    Q_INVOKABLE void openSettings() { Q_EMIT settingsRequested(); }

Q_SIGNALS:
    void isOpenChanged();
    /// At least one of the values changed. Emitted only while the popover is open.
    void changed();
    /// The status of a service changed while the popover is open. `text` is what a screen reader says.
    void announced(const QString &text);
    /// The user asked for the settings.
    void settingsRequested();

private:
    ServiceStatus heroStatus() const;
    std::vector<Service> services() const;
    void refresh();
    void announceChanges();

    StatusStore &store_;
    SettingsStore &settings_;
    WatchListModel rows_;
    bool isOpen_ = false;
    /// The labels of the last checks that the popover shows; nullopt while it opens.
    std::optional<QHash<ServiceID, QString>> labels_;
};

} // namespace kelvo
