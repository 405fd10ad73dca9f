#pragma once

#include <QString>
#include <QStringList>

namespace kelvo {

/// The one item that programs show in the desktop's tray, as the tray itself sees it on the session bus. There must be
/// one.
namespace TrayItem {

QString toolTip();
/// What its menu offers, without separators.
QStringList menu();
/// Chooses what the menu offers under that label.
void choose(const QString &label);

} // namespace TrayItem

} // namespace kelvo
