#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kelvo {

/// The user's preferences on disk: one value a key, private to the user.
///
/// Reads give nothing when the key is missing or its value does not have the type asked for; they never fail.
/// Writes go through to disk before they return, and atomically: killed at any moment, the file is the old one or the
/// new one. Where the place cannot be read or written, values live in memory for this run, and whatever is on disk is
/// left as it is.
class Preferences
{
public:
    Preferences() = default;
    Preferences(const Preferences &) = delete;
    Preferences &operator=(const Preferences &) = delete;
    virtual ~Preferences() = default;

    virtual std::optional<bool> boolean(const QString &key) const = 0;
    virtual std::optional<int> integer(const QString &key) const = 0;
    virtual std::optional<QString> text(const QString &key) const = 0;
    /// A stored empty list is an empty list, not a missing one.
    virtual std::optional<QStringList> texts(const QString &key) const = 0;

    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void setInteger(const QString &key, int value) = 0;
    virtual void setText(const QString &key, const QString &value) = 0;
    virtual void setTexts(const QString &key, const QStringList &value) = 0;
};

} // namespace kelvo
