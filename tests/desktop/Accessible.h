#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

namespace kelvo {

/// A thing on the screen as a screen reader meets it. Only where there is a bus of accessibility. One that is gone has
/// neither name nor children.
class Accessible
{
public:
    /// The numbers by which screen readers know them.
    enum Role : uint { CheckBox = 7, Label = 29, Button = 43, RadioButton = 44, Text = 61 };

    /// The program itself, whose children are its windows. Nothing while it is not on the bus.
    static std::optional<Accessible> program(qint64 processId);

    QString name() const;
    QString description() const;
    bool isChecked() const;
    /// On the screen.
    QRect geometry() const;
    QStringList actions() const;
    void act(const QString &action) const;

    QList<Accessible> children() const;
    /// The nearest one below this that is shown and whose name begins so.
    std::optional<Accessible> find(Role role, const QString &name) const;

private:
    enum State { checked = 4, showing = 25 };

    Accessible(QDBusConnection bus, QString service, QString path);

    QList<Accessible> childrenIn(QDBusPendingCall call) const;
    static bool hasState(QDBusPendingCall call, State state);
    QDBusPendingCall ask(const QString &interface, const QString &method, const QVariantList &arguments = {}) const;
    QDBusPendingCall askProperty(const QString &interface, const QString &name) const;

    QDBusConnection bus_;
    QString service_;
    QString path_;
};

} // namespace kelvo
