#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// Start at login by the freedesktop autostart specification: a desktop file in an autostart directory. The user's file
/// overrides those of the system.
class XdgLoginItem : public LoginItem
{
public:
    /// Uses the running program (for an AppImage, the image file) and the configuration directories of the session.
    XdgLoginItem();
    /// `configDirs` is the user's configuration directory followed by the system's, most important first.
    XdgLoginItem(const QString &program, const QStringList &configDirs);

    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;

private:
    bool systemStartsIt() const;
    bool write(const QByteArray &content) const;

    QByteArray exec_; ///< the value of the Exec key
    QString userFile_;
    QStringList systemFiles_;
};

} // namespace kelvo
