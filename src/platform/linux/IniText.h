#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QString>
#include <QStringList>

namespace kelvo {

/// The text of an INI file with one setting per line, as far as its settings outside of sections, or in the section
/// [General], are concerned.
///
/// A value is one word or several, separated by commas. A word can be quoted and can have the escape sequences of C; a
/// semicolon outside of quotes begins a comment. Files that QSettings wrote are read, except for values that are not
/// texts, such as "@Size(3 4)". No line has an effect on others: an unclosed quote ends with its line.
class IniText
{
public:
    /// Takes UTF-8; other bytes are kept.
    explicit IniText(const QByteArray &bytes);

    QByteArray bytes() const { return lines_.join('\n') + '\n'; }

    /// The words of each setting, none for an empty list. The last line of a key counts. Lines whose key has other
    /// characters than ASCII letters, digits and underscores are no settings.
    QHash<QString, QStringList> settings() const;
    /// Replaces the lines of the key, or adds one after the last setting. All other lines stay as they are. Takes a key that
    /// `settings` can return.
    void put(const QString &key, const QStringList &words);

private:
    QList<qsizetype> topLevel() const;

    QByteArrayList lines_;
};

} // namespace kelvo
