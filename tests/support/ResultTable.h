#pragma once

#include <QByteArray>
#include <QString>

namespace kelvo {

/// Replaces the text of `document` between the comments "<!-- The table of NAME begins. -->" and "<!-- The table of NAME
/// ends. -->" with `table`. Exits when the document has no such place or cannot be written.
void writeResultTable(const QString &document, const QByteArray &name, const QByteArray &table);

/// Removes the option "--write DOCUMENT" from `arguments` and returns the document; empty when the option is not there.
QString takeWriteOption(QStringList &arguments);

} // namespace kelvo
