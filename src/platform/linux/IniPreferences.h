#pragma once

#include "platform/Preferences.h"

#include <QHash>
#include <QSet>

namespace kelvo {

/// Preferences in an INI file with mode 0600 that a person can read and edit.
///
/// Values are stored as text: true, false, a decimal number, a text, or texts separated by commas. Reads allow for
/// edits by hand: `text` joins an unquoted list with commas again; `texts` returns a single text as a list of one and an
/// empty text as an empty list. A write replaces the line of its key and keeps all other lines, so a file that was edited
/// meanwhile, or that another process writes too, loses nothing; the last write of a key counts. If the file has vanished
/// or lost its content, all settings are written.
///
/// A file that other users can read is taken from them when it is read. Where that is not possible, the program says so
/// once and goes on. The new content is prepared in "<file>.unfinished"; what a killed process left there is removed at
/// the next start.
class IniPreferences : public Preferences
{
public:
    /// Uses Kelvo/Kelvo.conf in the user's configuration directory.
    IniPreferences();
    explicit IniPreferences(const QString &path);

    std::optional<bool> boolean(const QString &key) const override;
    std::optional<int> integer(const QString &key) const override;
    std::optional<QString> text(const QString &key) const override;
    std::optional<QStringList> texts(const QString &key) const override;

    void setBoolean(const QString &key, bool value) override;
    void setInteger(const QString &key, int value) override;
    void setText(const QString &key, const QString &value) override;
    void setTexts(const QString &key, const QStringList &value) override;

private:
    void store(const QString &key, const QStringList &words);
    bool save() const;

    QString path_;
    QHash<QString, QStringList> values_; ///< the words of each setting, none for an empty list
    QSet<QString> unsaved_;              ///< keys that were set but are not on disk yet
};

} // namespace kelvo
