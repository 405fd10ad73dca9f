#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace kelvo {

/// Returns an entry of KDE's configuration as it stands in one of these files, escape sequences included: for example the
/// key "name" of the group "[Theme]", or one of a nested group, "[Applications][org.example.Program]". nullopt if there is
/// none.
///
/// The first file that has the entry counts, unless a later one makes it final, with or without a value, with "[$i]" behind
/// its key, behind its group, or alone on a line. (https://develop.kde.org/docs/administration/kiosk/introduction/)
std::optional<QByteArray> kdeEntry(const QStringList &files, const QByteArray &group, const QByteArray &key);

} // namespace kelvo
