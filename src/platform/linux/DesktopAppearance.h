#pragma once

#include "platform/Appearance.h"
#include "platform/linux/BusNameOwner.h"

#include <QDBusMessage>
#include <QHash>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace kelvo {

/// The looks as the desktop portal tells them, else as the desktop keeps them itself, else as the palette shows them.
class DesktopAppearance : public Appearance
{
    Q_OBJECT

public:
    /// `desktops` are the names in XDG_CURRENT_DESKTOP. Needs the QGuiApplication.
    DesktopAppearance(std::shared_ptr<BusConnection> sessionBus, const QStringList &desktops);

    bool isDark() const override { return answers_.isDark; }
    bool panelIsDark() const override { return answers_.panelIsDark; }
    bool reduceMotion() const override { return answers_.reduceMotion; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void onPortalChanged(const QDBusMessage &signal);
    void onXfconfChanged(const QDBusMessage &signal);

private:
    struct Answers
    {
        bool isDark = false;
        bool panelIsDark = false;
        bool reduceMotion = false;
        bool operator==(const Answers &) const = default;
    };

    void askPortal();
    void followXfce();
    void askXfconf();
    void learn(const QString &group, const QString &name, const QVariant &value);
    Answers answers() const;
    bool windowsAreDark() const;
    void update();

    std::shared_ptr<BusConnection> bus_;
    bool isGnome_;
    BusNameOwner portal_;
    BusNameOwner xfcePanel_;
    std::unique_ptr<BusNameOwner> xfconf_;
    /// What the desktop said last, by the names of the setting and of its group.
    QHash<QString, QVariant> settings_;
    Answers answers_;
};

} // namespace kelvo
