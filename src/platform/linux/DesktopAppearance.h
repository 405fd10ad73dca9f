#pragma once

#include "platform/Appearance.h"
#include "platform/linux/BusNameOwner.h"
#include "platform/linux/PlasmaTheme.h"
#include "platform/linux/XSettings.h"

#include <QDBusMessage>
#include <QHash>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace kelvo {

/// How a desktop decides whether its panel is dark, unless a setting tells more.
enum class PanelRule { dark, light, asWindows };

/// Reads the appearance from the desktop portal, else from the desktop's own settings (those of Xfce, and those that a desktop
/// shares on X11), else from the palette.
class DesktopAppearance : public Appearance
{
    Q_OBJECT

public:
    /// `desktops` are the names in XDG_CURRENT_DESKTOP. Requires a QGuiApplication.
    DesktopAppearance(std::shared_ptr<BusConnection> sessionBus, const QStringList &desktops);

    bool isDark() const override { return answers_.isDark; }
    bool panelIsDark() const override { return answers_.panelIsDark; }
    bool highContrast() const override { return answers_.highContrast; }
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
        bool highContrast = false;
        bool reduceMotion = false;
        bool operator==(const Answers &) const = default;
    };

    void askPortal();
    void followXfce();
    void askXfconf();
    void learn(const QString &group, const QString &name, const QVariant &value);
    Answers answers() const;
    bool windowsAreDark() const;
    bool panelIsDarkBeside(bool darkWindows) const;
    bool contrastIsHigh() const;
    QString theme() const;
    void update();

    std::shared_ptr<BusConnection> bus_;
    PanelRule panelRule_;
    BusNameOwner portal_;
    BusNameOwner xfcePanel_;
    std::unique_ptr<BusNameOwner> xfconf_;
    XSettings xSettings_;
    std::unique_ptr<PlasmaTheme> plasmaTheme_; ///< null on other desktops than Plasma
    /// The last known values, by group and name of the setting.
    QHash<QString, QVariant> settings_;
    Answers answers_;
};

} // namespace kelvo
