#pragma once

#include "platform/Preferences.h"

#include <QHash>
#include <QSet>
#include <QVariant>

namespace kelvo {

/// Preferences in an INI file that a person can read and edit by hand; private to the user (mode 0600).
///
/// Values are stored as texts: true, false, a decimal number, a text, or texts with commas between. A text is given for
/// texts that a hand left unquoted, joined by commas again; a single text is given as a list of one, an empty one as
/// the empty list. A write changes its own line and leaves every other one as it is; a file whose lines run into each
/// other (an open quote) is written anew, and the old one kept as "<file>.bak".
class IniPreferences : public Preferences
{
public:
    /// Kelvo/Kelvo.conf in the user's configuration directory.
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
    void store(const QString &key, const QVariant &value);
    bool save() const;

    QString path_;
    QHash<QString, QVariant> values_; ///< a text, texts, or invalid: the file's word for no texts
    QSet<QString> unsaved_;           ///< written in this run, but not to disk
};

} // namespace kelvo
