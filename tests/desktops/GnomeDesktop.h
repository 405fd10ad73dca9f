#pragma once

#include "Desktop.h"

#include <QDBusMessage>
#include <QTemporaryDir>

namespace kelvo {

/// GNOME Shell in its unsafe mode, which offers its pictures and its scripts to every program. The pointer and the
/// keyboard are those of a remote desktop session.
class GnomeDesktop : public Desktop
{
public:
    GnomeDesktop();

    QImage picture() override;
    void moveTo(const QPoint &point) override;
    void click(Button button) override;
    void pressEscape() override;

private:
    void tell(const QString &method, const QVariantList &arguments);

    QTemporaryDir pictures_;
    QString session_;
};

} // namespace kelvo
