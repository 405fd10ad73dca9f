#pragma once

#include "menubar/popover/WatchListModel.h"
#include "monitor/StatusStore.h"
#include "settings/SettingsStore.h"

#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// What the popover shows, for its views: everything is derived from the stores whenever it is read. While the popover
/// is closed nothing is told, and so nothing is read.
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
    Q_PROPERTY(QString groupHeading READ groupHeading NOTIFY changed FINAL)
    Q_PROPERTY(kelvo::WatchListModel *rows READ rows CONSTANT FINAL)
    Q_PROPERTY(QString armedChannelLabel READ armedChannelLabel NOTIFY changed FINAL)

public:
    /// The stores must outlive this.
    PopoverState(StatusStore &store, SettingsStore &settings);

    bool isOpen() const { return isOpen_; }
    /// "No service" without a hero.
    QString heroName() const;
    bool heroIsPromoted() const { return store_.heroIsPromoted(); }
    ServiceHealth heroHealth() const { return heroStatus().health; }
    QString heroStatusLabel() const { return store_.heroStatusLabel(); }
    QString heroBodyLine() const { return store_.heroBodyLine(); }
    QString checkedText() const;
    QString groupHeading() const { return store_.groupHeading(); }
    WatchListModel *rows() { return &rows_; }
    QString armedChannelLabel() const { return settings_.armedChannelLabel(); }

    /// The popover appears: everything is brought up to date, and every service is checked as soon as control is back in
    /// the event loop.
    void open();
    /// The popover is gone.
    void close();

    /// Shows that service large, by its raw value; a second time hands back.
    Q_INVOKABLE void peek(const QString &service);
    Q_INVOKABLE void openSettings() { Q_EMIT settingsRequested(); }

Q_SIGNALS:
    void isOpenChanged();
    /// Any of the texts and colours may be another. Only while the popover is open.
    void changed();
    /// The user wants to see the settings.
    void settingsRequested();

private:
    ServiceStatus heroStatus() const;
    void setIsOpen(bool open);
    void refresh();

    StatusStore &store_;
    SettingsStore &settings_;
    WatchListModel rows_;
    bool isOpen_ = false;
};

} // namespace kelvo
