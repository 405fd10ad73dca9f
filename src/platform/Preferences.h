#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kelvo {

/// The user's preferences: one value per key, stored on disk, readable by the user only.
///
/// Reads return nullopt when the key is missing or its value does not have the requested type. They never fail.
/// Writes are on disk when they return, and they are atomic: if the process is killed, the file has either its old or
/// its new content. When the file cannot be read or written, values are kept in memory for this run and the file is not
/// changed.
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
    /// A stored empty list is returned as an empty list, not as nullopt.
    virtual std::optional<QStringList> texts(const QString &key) const = 0;

    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void setInteger(const QString &key, int value) = 0;
    virtual void setText(const QString &key, const QString &value) = 0;
    virtual void setTexts(const QString &key, const QStringList &value) = 0;
};

} // namespace kelvo
