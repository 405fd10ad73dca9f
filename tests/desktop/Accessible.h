#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

namespace kelvo {

/// An object in the accessibility tree, as a screen reader sees it. Requires a desktop with an accessibility bus. An
/// object that no longer exists has no name and no children.
class Accessible
{
public:
    /// The role numbers of AT-SPI.
    enum Role : uint {
        CheckBox = 7,
        Dialog = 16,
        Label = 29,
        Panel = 39,
        Button = 43,
        RadioButton = 44,
        Text = 61,
        Notification = 101
    };

    /// Returns the application object of a process; its children are the windows. Returns nullopt while the process is not
    /// on the accessibility bus.
    static std::optional<Accessible> program(qint64 processId);

    uint role() const;
    QString name() const;
    QString description() const;
    bool isChecked() const;
    /// The rectangle on the screen.
    QRect geometry() const;
    QStringList actions() const;
    void act(const QString &action) const;

    QList<Accessible> children() const;
    /// Returns the nearest visible descendant with this role whose name begins with `name`.
    std::optional<Accessible> find(Role role, const QString &name) const;

private:
    friend class AccessibilityEvents;
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

/// What programs tell screen readers while this object exists: notifications that appear, by their text, and changes of
/// check boxes and radio buttons, as "name: on" or "name: off".
class AccessibilityEvents : public QObject
{
    Q_OBJECT

public:
    AccessibilityEvents();
    ~AccessibilityEvents() override;

    const QStringList &heard() const { return heard_; }

private Q_SLOTS:
    void hear(const QDBusMessage &message);

private:
    void ask(const QString &method);

    QDBusConnection bus_;
    QStringList heard_;
};

} // namespace kelvo
