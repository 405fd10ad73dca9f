#pragma once

#include <QString>
#include <QStringList>

namespace kelvo {

/// The item in the tray of the desktop, accessed over the session bus as by the tray itself. Requires exactly one item.
namespace TrayItem {

QString toolTip();
/// Returns the labels of the menu, without separators.
QStringList menu();
/// Activates the menu entry with this label.
void choose(const QString &label);

} // namespace TrayItem

} // namespace kelvo
