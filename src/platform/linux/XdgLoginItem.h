#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// The freedesktop way of starting at login: a desktop file in an autostart directory. The user's own comes before
/// those of the system.
class XdgLoginItem : public LoginItem
{
public:
    /// The running program (of an AppImage the image itself), and the directories of this session.
    XdgLoginItem();
    /// `configDirs` are the user's configuration directory and then the system's, the more important first.
    XdgLoginItem(const QString &program, const QStringList &configDirs);

    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;

private:
    bool systemStartsIt() const;
    bool write(const QByteArray &content) const;

    QByteArray exec_; ///< the command line that starts the program, as a desktop file writes it
    QString userFile_;
    QStringList systemFiles_;
};

} // namespace kelvo
